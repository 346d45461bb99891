// Shapes of the 2-D layer. Angles in radians, clockwise on the screen since y grows down.
#pragma once

#include "ui/layer/ui_batch.h"

void uiQuad(Ui& ui, float x0, float y0, float x1, float y1, float texU0, float texV0, float texU1,
            float texV1, UiColor color, uint32_t texture);
void uiRect(Ui& ui, UiRect rect, UiColor color);
// The whole texture; nothing for texture 0.
void uiTexturedRect(Ui& ui, UiRect rect, uint32_t texture, UiColor color);
void uiGradientRect(Ui& ui, UiRect rect, UiColor topColor, UiColor bottomColor);
// Four bars inside the rectangle. They overlap in the corners, so that a translucent frame is denser there.
void uiFrame(Ui& ui, UiRect rect, float thickness, UiColor color);
void uiTriangle(Ui& ui, float x0, float y0, float x1, float y1, float x2, float y2, UiColor color);
void uiLine(Ui& ui, float x0, float y0, float x1, float y1, float width, UiColor color);
void uiArcFan(Ui& ui, float cx, float cy, float radius, float startAngle, float endAngle, int segments,
              UiColor color);
// The radius is held to half the shorter side.
void uiRoundRect(Ui& ui, UiRect rect, float radius, UiColor color);
