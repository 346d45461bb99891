#include "ui/ui_shapes.h"

#include <algorithm>
#include <cmath>

constexpr float PI = 3.14159265f;

static void addVertex(Ui& ui, float x, float y, UiColor color, float u = 0.0f, float v = 0.0f) {
    ui.vertices.push_back({x, y, u, v, color.r, color.g, color.b, color.a});
}

void uiQuad(Ui& ui, float x0, float y0, float x1, float y1, float texU0, float texV0, float texU1,
            float texV1, UiColor color, uint32_t texture) {
    uiBatch(ui, texture, 6);
    addVertex(ui, x0, y0, color, texU0, texV0);
    addVertex(ui, x1, y0, color, texU1, texV0);
    addVertex(ui, x1, y1, color, texU1, texV1);
    addVertex(ui, x0, y0, color, texU0, texV0);
    addVertex(ui, x1, y1, color, texU1, texV1);
    addVertex(ui, x0, y1, color, texU0, texV1);
}

void uiRect(Ui& ui, UiRect rect, UiColor color) {
    if (rect.w <= 0.0f || rect.h <= 0.0f) return;
    uiQuad(ui, rect.x, rect.y, rect.x + rect.w, rect.y + rect.h, 0.0f, 0.0f, 0.0f, 0.0f, color, 0);
}

void uiTexturedRect(Ui& ui, UiRect rect, uint32_t texture, UiColor color) {
    if (texture == 0) return;
    uiQuad(ui, rect.x, rect.y, rect.x + rect.w, rect.y + rect.h, 0.0f, 0.0f, 1.0f, 1.0f, color, texture);
}

void uiGradientRect(Ui& ui, UiRect rect, UiColor topColor, UiColor bottomColor) {
    if (rect.w <= 0.0f || rect.h <= 0.0f) return;
    const float x1 = rect.x + rect.w;
    const float y1 = rect.y + rect.h;
    uiBatch(ui, 0, 6);
    addVertex(ui, rect.x, rect.y, topColor);
    addVertex(ui, x1, rect.y, topColor);
    addVertex(ui, x1, y1, bottomColor);
    addVertex(ui, rect.x, rect.y, topColor);
    addVertex(ui, x1, y1, bottomColor);
    addVertex(ui, rect.x, y1, bottomColor);
}

void uiFrame(Ui& ui, UiRect rect, float thickness, UiColor color) {
    if (thickness <= 0.0f) return;
    uiRect(ui, {rect.x, rect.y, rect.w, thickness}, color);
    uiRect(ui, {rect.x, rect.y + rect.h - thickness, rect.w, thickness}, color);
    uiRect(ui, {rect.x, rect.y, thickness, rect.h}, color);
    uiRect(ui, {rect.x + rect.w - thickness, rect.y, thickness, rect.h}, color);
}

void uiTriangle(Ui& ui, float x0, float y0, float x1, float y1, float x2, float y2, UiColor color) {
    uiBatch(ui, 0, 3);
    addVertex(ui, x0, y0, color);
    addVertex(ui, x1, y1, color);
    addVertex(ui, x2, y2, color);
}

void uiLine(Ui& ui, float x0, float y0, float x1, float y1, float width, UiColor color) {
    const float dx = x1 - x0;
    const float dy = y1 - y0;
    const float length = std::sqrt(dx * dx + dy * dy);
    if (length < 0.001f) return;
    const float nx = -dy / length * width * 0.5f;
    const float ny = dx / length * width * 0.5f;
    uiTriangle(ui, x0 + nx, y0 + ny, x1 + nx, y1 + ny, x1 - nx, y1 - ny, color);
    uiTriangle(ui, x0 + nx, y0 + ny, x1 - nx, y1 - ny, x0 - nx, y0 - ny, color);
}

void uiArcFan(Ui& ui, float cx, float cy, float radius, float startAngle, float endAngle, int segments,
              UiColor color) {
    if (segments <= 0) return;
    uiBatch(ui, 0, static_cast<uint32_t>(segments) * 3);
    const auto angle = [&](int i) {
        return startAngle + static_cast<float>(i) * (endAngle - startAngle) / static_cast<float>(segments);
    };
    float rimX = cx + std::cos(startAngle) * radius;
    float rimY = cy + std::sin(startAngle) * radius;
    for (int i = 1; i <= segments; i++) {
        const float nextX = cx + std::cos(angle(i)) * radius;
        const float nextY = cy + std::sin(angle(i)) * radius;
        addVertex(ui, cx, cy, color);
        addVertex(ui, rimX, rimY, color);
        addVertex(ui, nextX, nextY, color);
        rimX = nextX;
        rimY = nextY;
    }
}

void uiRoundRect(Ui& ui, UiRect rect, float radius, UiColor color) {
    if (rect.w <= 0.0f || rect.h <= 0.0f) return;
    const float r = std::min(radius, std::min(rect.w, rect.h) * 0.5f);
    const float x1 = rect.x + rect.w;
    const float y1 = rect.y + rect.h;
    uiRect(ui, {rect.x + r, rect.y, rect.w - 2.0f * r, rect.h}, color);
    uiRect(ui, {rect.x, rect.y + r, r, rect.h - 2.0f * r}, color);
    uiRect(ui, {x1 - r, rect.y + r, r, rect.h - 2.0f * r}, color);

    constexpr int SEGMENTS = 6;
    uiArcFan(ui, rect.x + r, rect.y + r, r, PI, 1.5f * PI, SEGMENTS, color);
    uiArcFan(ui, x1 - r, rect.y + r, r, 1.5f * PI, 2.0f * PI, SEGMENTS, color);
    uiArcFan(ui, x1 - r, y1 - r, r, 0.0f, 0.5f * PI, SEGMENTS, color);
    uiArcFan(ui, rect.x + r, y1 - r, r, 0.5f * PI, PI, SEGMENTS, color);
}
