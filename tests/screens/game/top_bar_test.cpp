#include "app/session.h"
#include "screens/game/top_bar.h"
#include "screens/hud_fixture.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"

#include <cmath>
#include <limits>

class TopBarTest : public HudTest {
protected:
    static constexpr UiRect MENU = {10, 7, 84, 30};
    UiRect speedButton(int speed) const {
        return {static_cast<float>(input.drawableWidth) - 164.0f + 40.0f * static_cast<float>(speed), 7, 34,
                30};
    }

    // A button of the right group, as wide as its label asks.
    UiRect button(const std::string& label, float leastWidth = 0.0f) const {
        const Label text = textOf(label);
        const float width =
            std::max(uiTextWidth(const_cast<Ui&>(app.ui), label.c_str(), text.size) + 26.0f, leastWidth);
        return {middleX(text.rect) - width / 2.0f, 7, width, 30};
    }
};

TEST_F(TopBarTest, TheBarAndTheLineAtItsFoot) {
    draw();
    EXPECT_TRUE(drew({0, 0, 1280, 44}, {0.075f, 0.07f, 0.065f, 0.96f}));
    EXPECT_TRUE(drew({0, 42, 1280, 2}, colFrame));
}

TEST_F(TopBarTest, ReadOutsStandSideBySideFromTheMenuButton) {
    resize(1600, 720); // room for the largest font
    app.city.money = 1234567.9;
    app.city.population = 423;
    app.city.jobs = 187;
    app.city.happiness = 50.0f;
    draw();
    const float y = 22.0f - uiLineHeight(app.ui, 17) / 2.0f;
    float x = 106.0f;
    const auto expectNext = [&](const char* words, UiColor color) {
        expectText(words, x, y, 17, color);
        x += textOf(words).rect.w + 18.0f;
    };
    expectNext("Money 1234567", colGold);
    expectNext("Spring 01.03.2026", colText);
    expectNext("Citizens 423", colText);
    expectNext("Jobs 187", colText);
    expectNext("Happy 50%", colText);
    EXPECT_FALSE(says("Rain"));
}

TEST_F(TopBarTest, RainIsTheLastReadOut) {
    app.city.raining = 1;
    draw();
    EXPECT_EQ(textOf("Rain").rect.x, textOf("Happy 60%").rect.x + textOf("Happy 60%").rect.w + 18.0f);
    EXPECT_EQ(textOf("Rain").color, 0xB3D1F2FFu);
    app.city.raining = 2; // only a loaded file can say so
    draw();
    EXPECT_FALSE(says("Rain"));
}

TEST_F(TopBarTest, MoneyIsCutTowardsZeroAndRedBelowIt) {
    const auto expectMoney = [&](double money, const char* words, UiColor color) {
        app.city.money = money;
        draw();
        expectText(words, 106, 22.0f - uiLineHeight(app.ui, textOf(words).size) / 2.0f, textOf(words).size,
                   color);
    };
    expectMoney(0.0, "Money 0", colGold);
    expectMoney(-0.5, "Money 0", colBad);
    expectMoney(0.99, "Money 0", colGold);
    expectMoney(-1234.9, "Money -1234", colBad);
    expectMoney(1e300, "Money 9223372036854775807", colGold);
    expectMoney(-std::numeric_limits<double>::infinity(), "Money -9223372036854775808", colBad);
    expectMoney(std::nan(""), "Money 0", colGold);
}

TEST_F(TopBarTest, HappinessIsRoundedAndColoured) {
    const auto expectHappy = [&](float happiness, const char* words, UiColor color) {
        app.city.happiness = happiness;
        draw();
        const Label text = textOf(words);
        expectText(words, text.rect.x, text.rect.y, text.size, color);
    };
    expectHappy(34.49f, "Happy 34%", colBad);
    expectHappy(34.5f, "Happy 35%", colBad);
    expectHappy(34.9f, "Happy 35%", colBad);
    expectHappy(35.0f, "Happy 35%", colText);
    expectHappy(59.9f, "Happy 60%", colText);
    expectHappy(60.0f, "Happy 60%", colGood);
    expectHappy(std::nanf(""), "Happy 0%", colText);
    expectHappy(1e30f, "Happy 2147483647%", colGood);
}

TEST_F(TopBarTest, TheDateIsTheSunsAndNotTheDayCount) {
    app.city.day = 500;
    app.city.calendarDay = 306;
    draw();
    EXPECT_TRUE(says("Winter 01.01.2027"));
    app.city.calendarDay = 98;
    draw();
    EXPECT_TRUE(says("Summer 07.06.2026"));
    app.city.calendarDay = 190;
    draw();
    EXPECT_TRUE(says("Autumn 07.09.2026"));
}

TEST_F(TopBarTest, TheMenuButtonPauses) {
    draw();
    EXPECT_EQ(look(MENU), NORMAL);
    EXPECT_TRUE(says("Menu"));
    click(MENU);
    EXPECT_TRUE(app.paused);
}

TEST_F(TopBarTest, SpeedButtons) {
    constexpr const char* LABELS[] = {"||", "1", "2", "3"};
    for (const int speed : {2, 0, 3, 1}) {
        click(speedButton(speed));
        EXPECT_EQ(app.speed, speed);
        for (int other = 0; other < 4; other++) {
            EXPECT_EQ(look(speedButton(other)), other == speed ? PRIMARY : NORMAL);
            EXPECT_EQ(middleX(textOf(LABELS[other]).rect), middleX(speedButton(other)));
        }
    }
}

TEST_F(TopBarTest, TheOverlayButtonGoesThroughAllSixAsTabDoes) {
    resize(1600, 720);
    constexpr const char* NAMES[] = {"Normal",    "Traffic",   "Power", "Water",
                                     "Pollution", "Happiness", "Normal"};
    for (int overlay = 0; overlay < 6; overlay++) {
        draw();
        const float width = std::max(uiTextWidth(app.ui, NAMES[overlay], 17) + 26.0f, 96.0f);
        const UiRect rect = {speedButton(0).x - 16.0f - width, 7, width, 30};
        EXPECT_EQ(app.currentOverlay, overlay);
        EXPECT_EQ(look(rect), overlay == 0 ? NORMAL : PRIMARY) << NAMES[overlay];
        click(rect);
        EXPECT_EQ(app.meshes.overlayMode, app.currentOverlay);
    }
    EXPECT_EQ(app.currentOverlay, OVERLAY_NORMAL);
}

TEST_F(TopBarTest, PanelButtonsOpenAndCloseTheirPanels) {
    struct {
        const char* label;
        Panel panel;
    } const buttons[] = {
        {"Budget", PANEL_BUDGET}, {"Finances", PANEL_FINANCE}, {"Statistics", PANEL_STATISTICS}};
    draw();
    const UiRect places[] = {button("Budget"), button("Finances"), button("Statistics")};
    EXPECT_NEAR(places[2].x + places[2].w + 6.0f, speedButton(0).x - 16.0f - 96.0f, 0.01f);
    EXPECT_NEAR(places[1].x + places[1].w + 6.0f, places[2].x, 0.01f);
    EXPECT_NEAR(places[0].x + places[0].w + 6.0f, places[1].x, 0.01f);
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(look(places[i]), NORMAL);
        click(places[i]);
        EXPECT_EQ(app.currentPanel, buttons[i].panel);
        EXPECT_EQ(look(places[i]), PRIMARY);
        click(places[i]);
        EXPECT_EQ(app.currentPanel, PANEL_NONE);
        click(places[i]); // left open, for the next one to replace
    }
}

TEST_F(TopBarTest, TheFontShrinksUntilTheBarFitsAndNoFurtherThanTwelve) {
    app.city.raining = 1;
    int last = 17;
    for (int width = 1400; width >= 300; width -= 20) {
        resize(width, 720);
        draw();
        const int size = textOf("Statistics").size;
        EXPECT_LE(size, last);
        last = size;
    }
    EXPECT_EQ(last, 12);
    resize(1400, 720);
    draw();
    EXPECT_EQ(textOf("Money 150000").size, 17);
}

TEST_F(TopBarTest, ItShrinksAndLosesAReadOutOnlyWhereItMust) {
    const std::vector<const char*> readOuts = {"Money 150000", "Spring 01.03.2026", "Citizens 0", "Jobs 0",
                                               "Happy 60%"};
    for (const int scale : {1, 2}) {
        const int height = 720 * scale;
        const auto width = [&](const char* text, int size) {
            return static_cast<int>(uiTextWidth(app.ui, text, size));
        };
        const auto leftGroup = [&](int size) {
            int sum = (96 + 10) * scale;
            for (const char* text : readOuts) sum += width(text, size) + 18 * scale;
            return sum;
        };
        const auto rightGroup = [&](int size) {
            int sum = std::max(width("Normal", size) + 26 * scale, 96 * scale);
            sum += (6 + (34 + 6) * 4 + 10 + 10) * scale;
            for (const char* text : {"Statistics", "Finances", "Budget"})
                sum += width(text, size) + (26 + 6) * scale;
            return sum;
        };
        for (int size = 17 * scale; size > 12 * scale; size--) {
            const int whole = leftGroup(size) + rightGroup(size);
            resize(whole, height);
            draw();
            EXPECT_EQ(textOf("Menu").size, size);
            resize(whole - 1, height);
            draw();
            EXPECT_EQ(textOf("Menu").size, size - 1);
        }
        const int last = leftGroup(12 * scale) + (12 - 18) * scale + rightGroup(12 * scale);
        resize(last, height);
        draw();
        EXPECT_TRUE(says("Happy 60%"));
        resize(last - 1, height);
        draw();
        EXPECT_FALSE(says("Happy 60%"));
        EXPECT_TRUE(says("Jobs 0"));
    }
}

TEST_F(TopBarTest, TheLastReadOutsVanishBeforeTheyTouchTheButtons) {
    app.city.raining = 1;
    const std::vector<std::string> all = {"Money 150000", "Spring 01.03.2026", "Citizens 0",
                                          "Jobs 0",       "Happy 60%",         "Rain"};
    size_t drawnBefore = all.size();
    for (int width = 2600; width >= 800; width -= 30) {
        resize(width, 1440); // the scale is 2
        draw();
        size_t drawn = 0;
        while (drawn < all.size() && says(all[drawn])) drawn++;
        for (size_t i = drawn; i < all.size(); i++) EXPECT_FALSE(says(all[i])) << all[i] << " at " << width;
        EXPECT_LE(drawn, drawnBefore);
        drawnBefore = drawn;
        const Label budget = textOf("Budget");
        const float left = middleX(budget.rect) - uiTextWidth(app.ui, "Budget", budget.size) / 2.0f - 26.0f;
        if (drawn > 0) {
            const UiRect last = textOf(all[drawn - 1]).rect;
            EXPECT_LE(last.x + last.w, left - 24.0f + 0.01f) << width;
        }
    }
    EXPECT_EQ(drawnBefore, 0u);
    const Label statistics = textOf("Statistics"); // in its full width at the smallest size
    EXPECT_EQ(statistics.size, 24);
    EXPECT_TRUE(drew(
        {middleX(statistics.rect) - statistics.rect.w / 2.0f - 26.0f, 14, statistics.rect.w + 52.0f, 1.5f},
        colFrame));
}

// Only the rain may find no room: every language has words short enough for the rest.
TEST_F(TopBarTest, ALargeRainyCityShowsItsHappinessInEveryLanguageAndOverlay) {
    app.city.money = -12345.0;
    app.city.population = app.city.jobs = 12345;
    app.city.happiness = 100.0f;
    app.city.raining = 1;
    app.cityStats = computeStats(app.city);
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        setCurrentLanguage(language);
        fontsSetLanguage(app.fonts, language);
        char happiness[64];
        formatTextInto(happiness, sizeof happiness, tr(STR_HAPPY_PERCENT), 100);
        for (app.currentOverlay = 0; app.currentOverlay < OVERLAY_COUNT; app.currentOverlay++) {
            uiBeginFrame(app.ui, 1280, 720, input);
            drawTopBar(app);
            EXPECT_TRUE(says(happiness)) << languageAt(language).code << ' ' << int{app.currentOverlay};
        }
    }
    setCurrentLanguage(0);
}

TEST_F(TopBarTest, WithoutAFontTheButtonsWorkWithoutWords) {
    fontsShutdown(app.fonts);
    draw();
    EXPECT_TRUE(texts().empty());
    EXPECT_EQ(look(MENU), NORMAL);
    click(speedButton(2));
    EXPECT_EQ(app.speed, 2);
    click({speedButton(0).x - 16.0f - 96.0f - 6.0f - 26.0f, 7, 26, 30});
    EXPECT_EQ(app.currentPanel, PANEL_STATISTICS);
}

TEST_F(TopBarTest, WhilePausedTheButtonsStillRespond) {
    app.paused = true;
    click(speedButton(3));
    EXPECT_EQ(app.speed, 3);
    clickOn("Finances");
    EXPECT_EQ(app.currentPanel, PANEL_FINANCE);
    EXPECT_TRUE(app.paused);
}
