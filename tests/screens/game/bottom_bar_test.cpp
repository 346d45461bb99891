#include "screens/hud_fixture.h"
#include "sim/missions.h"

class BottomBarTest : public HudTest {
protected:
    static constexpr float TOP = 720.0f - 84.0f;

    void say(int statusId, uint32_t argument = 0) {
        app.statusId = static_cast<uint8_t>(statusId);
        app.statusArg = argument;
        app.statusTimer = 6.0f;
    }
};

TEST_F(BottomBarTest, TheBarAndTheLineAtItsHead) {
    draw();
    EXPECT_TRUE(drew({0, TOP, 1280, 84}, {0.075f, 0.07f, 0.065f, 0.96f}));
    EXPECT_TRUE(drew({0, TOP, 1280, 2}, colFrame));
}

TEST_F(BottomBarTest, TheMissionsProgressIsABarAndAPercentageCutDown) {
    app.city.streetCells = 13; // 32.5 percent of the mission
    draw();
    expectText("Progress 32%", 272, TOP + 60, 12, colText);
    EXPECT_TRUE(drew({16, TOP + 64, 242, 9}, {0.20f, 0.19f, 0.18f, 1})); // between the rounded corners
    EXPECT_TRUE(drew({16, TOP + 64, 0.325f * 250.0f - 8.0f, 9}, colGood));
}

TEST_F(BottomBarTest, EveryMissionHasItsNameAndGoal) {
    const std::pair<const char*, const char*> missions[] = {
        {"First streets", "Build 20 road cells and zone 20 cells"},
        {"First citizens", "Reach 80 citizens"},
        {"Main street", "Have 10 shops and 6 offices"},
        {"Public safety", "Police, fire station and hospital at 500 citizens"},
        {"Green city", "3 parks, low pollution, 1200 citizens"},
        {"Metropolis", "5000 citizens and 60% happiness"}};
    for (int i = 0; i < missionCount(); i++) {
        app.city.missionIndex = i;
        draw();
        expectText("Mission " + std::to_string(i + 1) + " of 6", 12, TOP + 8, 12, colMuted);
        expectText(missions[i].first, 12, TOP + 22, 17, colGold, ALIGN_LEFT, true);
        expectText(missions[i].second, 12, TOP + 44, textOf(missions[i].second).size, colText);
        EXPECT_LE(textOf(missions[i].second).rect.w, 360.0f);
    }
}

TEST_F(BottomBarTest, AfterTheLastMissionItSaysSo) {
    for (const int index : {6, 7, 2147483647}) {
        app.city.missionIndex = index;
        draw();
        expectText("All missions complete", 12, TOP + 14, 17, colGold, ALIGN_LEFT, true);
        EXPECT_FALSE(says("Progress 100%"));
    }
}

TEST_F(BottomBarTest, AMissionNumberBelowZeroShowsTheFirst) {
    app.city.missionIndex = -2147483647;
    draw();
    EXPECT_TRUE(says("First streets"));
}

TEST_F(BottomBarTest, AMessageStandsForAsLongAsItsTimerRuns) {
    say(33);
    draw();
    expectText("Game saved.", 390, TOP + 8, 17, colText);
    app.statusTimer = 0.0f;
    draw();
    EXPECT_FALSE(says("Game saved."));
    app.statusTimer = 6.0f;
    app.statusId = 0;
    const size_t silent = texts().size();
    for (const int id : {0, 36, 255}) {
        say(id);
        draw();
        EXPECT_EQ(texts().size(), silent) << id;
    }
}

TEST_F(BottomBarTest, ALongMessageWrapsAndLosesWhatDoesNotFitSilently) {
    resize(800, 720); // 86 wide
    say(30);          // "The city is bankrupt. Money stayed below zero for 10 days."
    draw();
    float lowest = 0.0f;
    std::string said;
    for (const Label& text : texts())
        if (text.rect.x == 390.0f && text.rect.y >= TOP) {
            said += text.words;
            lowest = std::max(lowest, text.rect.y);
            EXPECT_LE(text.rect.w, 86.0f + 8.0f); // a space may hang over
        }
    EXPECT_EQ(said.rfind("The city", 0), 0u) << said;
    EXPECT_EQ(said.find("days"), std::string::npos) << said;
    EXPECT_LE(lowest + uiLineHeight(app.ui, 17), TOP + 8 + 68.5f);
}

TEST_F(BottomBarTest, AMessageWithoutAnyWidthIsNotDrawn) {
    for (const int width : {714, 713, 640, 100, 1}) { // 390 to the left of it, 324 to the right
        resize(width, 720);
        app.statusTimer = 0.0f;
        draw();
        const size_t silent = texts().size();
        say(STATUS_NO_MONEY_FOR_ROAD);
        draw();
        EXPECT_EQ(texts().size(), silent) << width;
    }
    resize(960, 1080); // as high windows have it: the scale is 1.5
    draw();
    const auto all = texts();
    EXPECT_FALSE(
        std::any_of(all.begin(), all.end(), [](const Label& text) { return text.rect.x == 585.0f; }));
}

TEST_F(BottomBarTest, NoLegendWithoutAnOverlay) {
    draw();
    EXPECT_FALSE(says("Low"));
    EXPECT_FALSE(says("High"));
}

TEST_F(BottomBarTest, TheLegendOfEachOverlayRunsFromLowToHigh) {
    struct {
        const char* name;
        UiColor low;
        UiColor high;
    } const legends[] = {{"Traffic", {0.25f, 0.78f, 0.36f, 1}, {0.90f, 0.18f, 0.14f, 1}},
                         {"Power", {0.15f, 0.16f, 0.18f, 1}, {0.92f, 0.78f, 0.26f, 1}},
                         {"Water", {0.15f, 0.16f, 0.18f, 1}, {0.20f, 0.62f, 1.00f, 1}},
                         {"Pollution", {0.50f, 0.66f, 0.40f, 1}, {0.36f, 0.22f, 0.10f, 1}},
                         {"Happiness", {0.80f, 0.27f, 0.22f, 1}, {0.26f, 0.74f, 0.38f, 1}}};
    for (uint8_t overlay = OVERLAY_TRAFFIC; overlay < OVERLAY_COUNT; overlay++) {
        const auto& legend = legends[overlay - 1];
        app.currentOverlay = overlay;
        draw();
        expectText(legend.name, 974, TOP + 9, 16, colGold, ALIGN_LEFT, true);
        expectText("Low", 974, TOP + 53, 13, colMuted);
        expectText("High", 1260, TOP + 53, 13, colMuted, ALIGN_RIGHT);
        EXPECT_TRUE(drew({974, TOP + 35, 286, 1}, colFrame));
        for (int i = 0; i < 32; i++) {
            const float t = (static_cast<float>(i) + 0.5f) / 32.0f;
            const UiColor color = {legend.low.r + (legend.high.r - legend.low.r) * t,
                                   legend.low.g + (legend.high.g - legend.low.g) * t,
                                   legend.low.b + (legend.high.b - legend.low.b) * t, 1};
            const float x = 974.0f + static_cast<float>(i) / 32.0f * 286.0f;
            EXPECT_TRUE(drew({x, TOP + 35, 286.0f / 32.0f + 1.0f, 14}, color)) << legend.name << " " << i;
        }
    }
}
