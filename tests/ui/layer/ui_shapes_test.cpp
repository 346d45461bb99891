#include "ui/layer/ui_shapes.h"

#include "ui/layer/ui_helpers.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>

using testing::IsEmpty;
using testing::SizeIs;

constexpr UiColor INK = {0.1f, 0.2f, 0.3f, 0.4f};
constexpr UiColor PAPER = {0.9f, 0.8f, 0.7f, 0.6f};
constexpr float PI = std::numbers::pi_v<float>;

struct Point {
    float x, y;
    bool operator==(const Point&) const = default;
};
static void PrintTo(const Point& point, std::ostream* out) {
    *out << '(' << point.x << ", " << point.y << ')';
}

static std::vector<Point> points(const Ui& ui) {
    std::vector<Point> all;
    for (const UiVertex& vertex : ui.vertices) all.push_back({vertex.x, vertex.y});
    return all;
}

static UiColor colorOf(const UiVertex& vertex) { return {vertex.r, vertex.g, vertex.b, vertex.a}; }

static bool sameColor(UiColor a, UiColor b) { return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a; }

static bool sameVertex(const UiVertex& a, const UiVertex& b) {
    return a.x == b.x && a.y == b.y && a.u == b.u && a.v == b.v && sameColor(colorOf(a), colorOf(b));
}

static std::vector<Point> quadPoints(float x0, float y0, float x1, float y1) {
    return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y0}, {x1, y1}, {x0, y1}};
}

static void expectSolid(const Ui& ui) {
    expectWholeBatch(ui);
    for (const UiVertex& vertex : ui.vertices) EXPECT_TRUE(sameColor(colorOf(vertex), INK));
    for (const UiDrawCommand& command : ui.commands) EXPECT_EQ(command.texture, 0u);
}

// --- Rectangles

TEST(UiQuad, IsTwoTrianglesWithTheirPlaceInTheTexture) {
    Ui ui;
    uiQuad(ui, 1, 2, 30, 40, 0.1f, 0.2f, 0.7f, 0.9f, INK, 5);
    EXPECT_EQ(points(ui), quadPoints(1, 2, 30, 40));
    for (const UiVertex& vertex : ui.vertices) {
        EXPECT_EQ(vertex.u, vertex.x == 1 ? 0.1f : 0.7f);
        EXPECT_EQ(vertex.v, vertex.y == 2 ? 0.2f : 0.9f);
        EXPECT_TRUE(sameColor(colorOf(vertex), INK));
    }
    ASSERT_THAT(ui.commands, SizeIs(1));
    EXPECT_EQ(ui.commands[0].texture, 5u);
    expectWholeBatch(ui);
}

TEST(UiRect, IsASolidQuad) {
    Ui ui;
    uiRect(ui, {3, 4, 10, 20}, INK);
    EXPECT_EQ(points(ui), quadPoints(3, 4, 13, 24));
    expectSolid(ui);
}

TEST(UiRect, WithoutExtentIsNothing) {
    Ui ui;
    for (const UiRect& rect : {UiRect{0, 0, 0, 5}, {0, 0, 5, 0}, {0, 0, -1, 5}, {0, 0, 5, -1}}) {
        uiRect(ui, rect, INK);
        uiGradientRect(ui, rect, INK, PAPER);
        uiRoundRect(ui, rect, 3, INK);
    }
    EXPECT_THAT(ui.vertices, IsEmpty());
    EXPECT_THAT(ui.commands, IsEmpty());
}

TEST(UiTexturedRect, ShowsTheWholeTextureOrNothing) {
    Ui ui;
    uiTexturedRect(ui, {0, 0, 5, 5}, 0, INK);
    EXPECT_THAT(ui.vertices, IsEmpty());
    uiTexturedRect(ui, {2, 3, 4, 5}, 7, INK);
    EXPECT_EQ(points(ui), quadPoints(2, 3, 6, 8));
    EXPECT_EQ(ui.vertices[0].u, 0.0f);
    EXPECT_EQ(ui.vertices[0].v, 0.0f);
    EXPECT_EQ(ui.vertices[2].u, 1.0f);
    EXPECT_EQ(ui.vertices[2].v, 1.0f);
}

TEST(UiGradientRect, RunsFromTheTopToTheBottom) {
    Ui ui;
    uiGradientRect(ui, {1, 2, 10, 20}, INK, PAPER);
    EXPECT_EQ(points(ui), quadPoints(1, 2, 11, 22));
    for (const UiVertex& vertex : ui.vertices)
        EXPECT_TRUE(sameColor(colorOf(vertex), vertex.y == 2 ? INK : PAPER));
    ASSERT_THAT(ui.commands, SizeIs(1));
    EXPECT_EQ(ui.commands[0].texture, 0u);
    expectWholeBatch(ui);
}

TEST(UiFrame, IsFourBarsInsideThatOverlapInTheCorners) {
    Ui ui;
    uiFrame(ui, {10, 20, 100, 50}, 2, INK);
    std::vector<Point> expected;
    for (const auto& bar : {quadPoints(10, 20, 110, 22), quadPoints(10, 68, 110, 70),
                            quadPoints(10, 20, 12, 70), quadPoints(108, 20, 110, 70)})
        expected.insert(expected.end(), bar.begin(), bar.end());
    EXPECT_EQ(points(ui), expected);
    expectSolid(ui);
}

TEST(UiFrame, HasTheBarsThatItsExtentAllows) {
    Ui ui;
    uiFrame(ui, {0, 0, 10, 10}, 0, INK);
    uiFrame(ui, {0, 0, 10, 10}, -1, INK);
    uiFrame(ui, {0, 0, 0, 0}, 2, INK);
    EXPECT_THAT(ui.vertices, IsEmpty());
    uiFrame(ui, {0, 0, 10, 0}, 2, INK);
    EXPECT_THAT(ui.vertices, SizeIs(12)); // top and bottom
    uiFrame(ui, {0, 0, -4, 10}, 2, INK);
    EXPECT_THAT(ui.vertices, SizeIs(24)); // left and right
    EXPECT_EQ(ui.vertices.back().y, 10.0f);
}

// --- Lines and fans

TEST(UiTriangle, HasItsCornersInOrder) {
    Ui ui;
    uiTriangle(ui, 1, 2, 3, 4, 5, 6, INK);
    EXPECT_EQ(points(ui), (std::vector<Point>{{1, 2}, {3, 4}, {5, 6}}));
    expectSolid(ui);
}

TEST(UiLine, IsHalfItsWidthToEitherSide) {
    Ui ui;
    uiLine(ui, 10, 10, 20, 10, 4, INK);
    ASSERT_THAT(ui.vertices, SizeIs(6));
    float left = 1e9f, right = 0, top = 1e9f, bottom = 0;
    for (const UiVertex& vertex : ui.vertices) {
        left = std::min(left, vertex.x);
        right = std::max(right, vertex.x);
        top = std::min(top, vertex.y);
        bottom = std::max(bottom, vertex.y);
    }
    EXPECT_EQ((std::vector<float>{left, right, top, bottom}), (std::vector<float>{10, 20, 8, 12}));
    expectSolid(ui);
}

TEST(UiLine, ThatIsSlantedHasTheSameWidth) {
    Ui ui;
    uiLine(ui, 0, 0, 30, 40, 10, INK);
    for (const UiVertex& vertex : ui.vertices) // distance from the axis
        EXPECT_NEAR(std::fabs(vertex.x * 40 - vertex.y * 30) / 50, 5.0f, 1e-4f);
}

TEST(UiLine, ThatIsShorterThanAThousandthIsNothing) {
    Ui ui;
    uiLine(ui, 5, 5, 5, 5, 2, INK);
    uiLine(ui, 5, 5, 5.0005f, 5, 2, INK);
    EXPECT_THAT(ui.vertices, IsEmpty());
    uiLine(ui, 0, 0, 0.001f, 0, 2, INK);
    EXPECT_THAT(ui.vertices, SizeIs(6));
}

TEST(UiArcFan, IsATriangleFromTheCentreForEachSegment) {
    Ui ui;
    uiArcFan(ui, 50, 60, 10, 0.5f, 2.0f, 3, INK);
    ASSERT_THAT(ui.vertices, SizeIs(9));
    for (int i = 0; i < 3; i++) {
        const auto at = [&](int corner) { return points(ui)[static_cast<size_t>(i * 3 + corner)]; };
        const auto rim = [](float angle) {
            return Point{50 + std::cos(angle) * 10, 60 + std::sin(angle) * 10};
        };
        EXPECT_EQ(at(0), (Point{50, 60}));
        EXPECT_EQ(at(1), rim(0.5f + static_cast<float>(i) * 1.5f / 3.0f));
        EXPECT_EQ(at(2), rim(0.5f + static_cast<float>(i + 1) * 1.5f / 3.0f));
    }
    expectSolid(ui);
}

TEST(UiArcFan, WithoutSegmentsIsNothing) {
    Ui ui;
    uiArcFan(ui, 0, 0, 5, 0, 1, 0, INK);
    uiArcFan(ui, 0, 0, 5, 0, 1, -3, INK);
    EXPECT_THAT(ui.vertices, IsEmpty());
    EXPECT_THAT(ui.commands, IsEmpty());
}

// --- Round rectangles

// Its parts, one by one.
static void plainRoundRect(Ui& ui, UiRect rect, float radius, UiColor color) {
    const float r = std::min(radius, 0.5f * std::min(rect.w, rect.h));
    const float x1 = rect.x + rect.w;
    const float y1 = rect.y + rect.h;
    if (rect.w - 2 * r > 0) uiRect(ui, {rect.x + r, rect.y, rect.w - 2 * r, rect.h}, color);
    if (r > 0 && rect.h - 2 * r > 0) {
        uiRect(ui, {rect.x, rect.y + r, r, rect.h - 2 * r}, color);
        uiRect(ui, {x1 - r, rect.y + r, r, rect.h - 2 * r}, color);
    }
    uiArcFan(ui, rect.x + r, rect.y + r, r, PI, 1.5f * PI, 6, color);
    uiArcFan(ui, x1 - r, rect.y + r, r, 1.5f * PI, 2 * PI, 6, color);
    uiArcFan(ui, x1 - r, y1 - r, r, 0, 0.5f * PI, 6, color);
    uiArcFan(ui, rect.x + r, y1 - r, r, 0.5f * PI, PI, 6, color);
}

TEST(UiRoundRect, IsThreeBarsAndFourFans) {
    for (const UiRect& rect :
         {UiRect{10, 20, 100, 50}, {0.3f, 7.7f, 33.3f, 9.1f}, {5, 5, 12, 12}, {1, 2, 8, 300}})
        for (const float radius : {0.0f, 3.0f, 6.0f, 12.5f, 1000.0f}) {
            Ui ui, plain;
            uiRoundRect(ui, rect, radius, INK);
            plainRoundRect(plain, rect, radius, INK);
            ASSERT_EQ(ui.vertices.size(), plain.vertices.size());
            EXPECT_TRUE(
                std::equal(ui.vertices.begin(), ui.vertices.end(), plain.vertices.begin(), sameVertex));
            ASSERT_THAT(ui.commands, SizeIs(1));
            expectSolid(ui);
        }
}

TEST(UiRoundRect, ARadiusIsHeldToHalfTheShorterSide) {
    Ui high, held;
    uiRoundRect(high, {0, 0, 100, 8}, 6, INK);
    uiRoundRect(held, {0, 0, 100, 8}, 4, INK);
    EXPECT_EQ(points(high), points(held));
    EXPECT_THAT(high.vertices, SizeIs(6 + 4 * 18)); // no side bars
}

TEST(UiRoundRect, StaysWithinItsRectangle) {
    Ui ui;
    uiRoundRect(ui, {10, 20, 100, 50}, 12, INK);
    for (const UiVertex& vertex : ui.vertices) {
        EXPECT_TRUE(vertex.x > 9.999f && vertex.x < 110.001f) << vertex.x;
        EXPECT_TRUE(vertex.y > 19.999f && vertex.y < 70.001f) << vertex.y;
    }
}
