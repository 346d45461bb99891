#include "screens/hud_fixture.h"

#include <cmath>

class CityOverviewTest : public HudTest {};

TEST_F(CityOverviewTest, DemandPeopleAndAHint) {
    app.city.demand = {0.5f, -0.25f, 0.0f, 1.0f};
    app.city.population = 423;
    app.city.happiness = 64.5f;
    draw();
    expectText("City", 988, 68, 20, colGold, ALIGN_LEFT, true);
    expectText("Demand", 988, 108, 16, colText, ALIGN_LEFT, true);
    struct {
        const char* zone;
        const char* percent;
        float fill; // pixels
        UiColor color;
    } const rows[] = {{"Residential", "+50%", 134, colGood},
                      {"Commercial", "-25%", 67, colBad},
                      {"Offices", "+0%", 0, colGood},
                      {"Industrial", "+100%", 268, colGood}};
    float y = 136.0f;
    for (const auto& [zone, percent, fill, color] : rows) {
        expectText(zone, 988, y, 14, colMuted);
        expectText(percent, 1256, y, 14, colText, ALIGN_RIGHT);
        EXPECT_TRUE(drew({992, y + 19, 260, 9}, {0.20f, 0.19f, 0.18f, 1}));
        EXPECT_EQ(drew({992, y + 19, fill - 8.0f, 9}, color), fill > 0.0f) << zone;
        y += 38.0f;
    }
    expectText("Citizens", 988, 298, 15, colMuted);
    expectText("423", 1256, 298, 15, colText, ALIGN_RIGHT);
    expectText("65%", 1256, 322, 15, colText, ALIGN_RIGHT);
    const Label hint = textOf("Click a building or road to see its ");
    expectText(hint.words, 988, 536, 15, colMuted);
}

TEST_F(CityOverviewTest, HappinessIsRounded) {
    for (const auto& [happiness, words] :
         {std::pair(64.49f, "64%"), {64.5f, "65%"}, {0.49f, "0%"}, {99.5f, "100%"}}) {
        app.city.happiness = happiness;
        draw();
        expectText(words, 1256, 322, 15, colText, ALIGN_RIGHT);
    }
}

TEST_F(CityOverviewTest, DemandIsCutTowardsZero) {
    app.city.demand = {0.999f, -0.999f, 0.009f, -0.009f};
    draw();
    EXPECT_TRUE(says("+99%"));
    EXPECT_TRUE(says("-99%"));
    int zeros = 0;
    for (const Label& text : texts()) zeros += text.words == "+0%";
    EXPECT_EQ(zeros, 2);
}

TEST_F(CityOverviewTest, InALowWindowTheHintFollowsTheFigures) {
    resize(1280, 300); // the scale is 0.75, and the panel 195 high
    draw();
    const Label hint = textOf("Click a building or road to see its ");
    EXPECT_NEAR(hint.rect.y, 346.0f * 0.75f, 0.02f);
}

TEST_F(CityOverviewTest, WildDemandIsShownSafely) {
    app.city.demand = {std::nanf(""), INFINITY, -INFINITY, 1e30f};
    app.city.population = -2147483647 - 1;
    draw();
    EXPECT_TRUE(says("+0%"));
    EXPECT_TRUE(says("-2147483648%"));
    EXPECT_TRUE(says("-2147483648"));
    for (const UiVertex& vertex : app.ui.vertices) ASSERT_TRUE(std::isfinite(vertex.x));
}
