#include "ui/layer/ui_shapes.h"

#include <algorithm>
#include <array>
#include <cmath>

constexpr float PI = 3.14159265f;

// Solid shapes have no place in a texture.
static UiVertex solid(float x, float y, UiColor color) {
    return {x, y, 0.0f, 0.0f, color.r, color.g, color.b, color.a};
}

// Two triangles, from the corners clockwise.
static void addQuad(Ui& ui, uint32_t texture, const UiVertex& topLeft, const UiVertex& topRight,
                    const UiVertex& bottomRight, const UiVertex& bottomLeft) {
    UiVertex* vertex = uiBatch(ui, texture, 6);
    *vertex++ = topLeft;
    *vertex++ = topRight;
    *vertex++ = bottomRight;
    *vertex++ = topLeft;
    *vertex++ = bottomRight;
    *vertex = bottomLeft;
}

void uiQuad(Ui& ui, float x0, float y0, float x1, float y1, float texU0, float texV0, float texU1,
            float texV1, UiColor color, uint32_t texture) {
    const auto [r, g, b, a] = color;
    addQuad(ui, texture, {x0, y0, texU0, texV0, r, g, b, a}, {x1, y0, texU1, texV0, r, g, b, a},
            {x1, y1, texU1, texV1, r, g, b, a}, {x0, y1, texU0, texV1, r, g, b, a});
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
    addQuad(ui, 0, solid(rect.x, rect.y, topColor), solid(x1, rect.y, topColor), solid(x1, y1, bottomColor),
            solid(rect.x, y1, bottomColor));
}

void uiFrame(Ui& ui, UiRect rect, float thickness, UiColor color) {
    if (thickness <= 0.0f) return;
    uiRect(ui, {rect.x, rect.y, rect.w, thickness}, color);
    uiRect(ui, {rect.x, rect.y + rect.h - thickness, rect.w, thickness}, color);
    uiRect(ui, {rect.x, rect.y, thickness, rect.h}, color);
    uiRect(ui, {rect.x + rect.w - thickness, rect.y, thickness, rect.h}, color);
}

void uiTriangle(Ui& ui, float x0, float y0, float x1, float y1, float x2, float y2, UiColor color) {
    UiVertex* vertex = uiBatch(ui, 0, 3);
    *vertex++ = solid(x0, y0, color);
    *vertex++ = solid(x1, y1, color);
    *vertex = solid(x2, y2, color);
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

struct UnitPoint {
    float x, y;
};

// Where the rim of radius 1 lies after `i` of the segments.
static UnitPoint rimPoint(float startAngle, float endAngle, int segments, int i) {
    const float angle =
        startAngle + static_cast<float>(i) * (endAngle - startAngle) / static_cast<float>(segments);
    return {std::cos(angle), std::sin(angle)};
}

static UiVertex onRim(float cx, float cy, float radius, UnitPoint point, UiColor color) {
    return solid(cx + point.x * radius, cy + point.y * radius, color);
}

void uiArcFan(Ui& ui, float cx, float cy, float radius, float startAngle, float endAngle, int segments,
              UiColor color) {
    if (segments <= 0) return;
    UiVertex* vertex = uiBatch(ui, 0, static_cast<uint32_t>(segments) * 3);
    const UiVertex centre = solid(cx, cy, color);
    UiVertex from = onRim(cx, cy, radius, rimPoint(startAngle, endAngle, segments, 0), color);
    for (int i = 1; i <= segments; i++) {
        const UiVertex to = onRim(cx, cy, radius, rimPoint(startAngle, endAngle, segments, i), color);
        *vertex++ = centre;
        *vertex++ = from;
        *vertex++ = to;
        from = to;
    }
}

// The rims of the four corners of a round rectangle, clockwise from the top left. They are kept because a
// screen has hundreds of such corners, and their sines would cost more than all else on it.
constexpr int CORNER_SEGMENTS = 6;
using CornerRim = std::array<UnitPoint, CORNER_SEGMENTS + 1>;

static std::array<CornerRim, 4> makeCornerRims() {
    constexpr float angles[4][2] = {
        {PI, 1.5f * PI}, {1.5f * PI, 2.0f * PI}, {0.0f, 0.5f * PI}, {0.5f * PI, PI}};
    std::array<CornerRim, 4> rims;
    for (size_t corner = 0; corner < rims.size(); corner++)
        for (int i = 0; i <= CORNER_SEGMENTS; i++)
            rims[corner][static_cast<size_t>(i)] =
                rimPoint(angles[corner][0], angles[corner][1], CORNER_SEGMENTS, i);
    return rims;
}

// As uiArcFan would draw it.
static void addCorner(Ui& ui, float cx, float cy, float radius, const CornerRim& rim, UiColor color) {
    UiVertex* vertex = uiBatch(ui, 0, CORNER_SEGMENTS * 3);
    for (size_t i = 0; i < CORNER_SEGMENTS; i++) {
        *vertex++ = solid(cx, cy, color);
        *vertex++ = onRim(cx, cy, radius, rim[i], color);
        *vertex++ = onRim(cx, cy, radius, rim[i + 1], color);
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

    static const std::array<CornerRim, 4> rims = makeCornerRims();
    addCorner(ui, rect.x + r, rect.y + r, r, rims[0], color);
    addCorner(ui, x1 - r, rect.y + r, r, rims[1], color);
    addCorner(ui, x1 - r, y1 - r, r, rims[2], color);
    addCorner(ui, rect.x + r, y1 - r, r, rims[3], color);
}
