#include "screens/hud_fixture.h"

class BudgetPanelTest : public HudTest {
protected:
    BudgetPanelTest() { app.currentPanel = PANEL_BUDGET; }

    // Rows count through taxes and budgets.
    static float rowY(int row) {
        const float y = 108.0f + 36.0f * static_cast<float>(row);
        return row < 4 ? y : y + 44.0f;
    }
    static UiRect minus(int row) { return {1190, rowY(row) + 2, 30, 30}; }
    static UiRect plus(int row) { return {1226, rowY(row) + 2, 30, 30}; }
};

static const std::vector<std::string> CAPTIONS = {"Residential", "Commercial", "Offices", "Industrial",
                                                  "Police",      "Fire",       "Health",  "Education",
                                                  "Parks",       "Transit",    "Power",   "Water"};

TEST_F(BudgetPanelTest, TwelveRowsUnderTwoTitles) {
    for (int i = 0; i < 4; i++) app.city.taxRate[i] = 110 + 10 * i;
    for (int i = 0; i < 8; i++) app.city.serviceBudget[i] = 60 + 10 * i;
    draw();
    expectText("Taxes", 988, 68, 20, colGold, ALIGN_LEFT, true);
    expectText("Service budgets", 988, 262, 18, colGold, ALIGN_LEFT, true);
    for (int row = 0; row < 12; row++) {
        const int rate = row < 4 ? 110 + 10 * row : 60 + 10 * (row - 4);
        expectText(CAPTIONS[row], 988, rowY(row) + 8, 16, colText);
        expectText(std::to_string(rate) + "%", 1182, rowY(row) + 8, 16, colText, ALIGN_RIGHT);
        EXPECT_EQ(look(minus(row)), NORMAL) << CAPTIONS[row];
        EXPECT_EQ(look(plus(row)), NORMAL) << CAPTIONS[row];
    }
}

TEST_F(BudgetPanelTest, AClickIsAStepOfTenOfItsOwnRateAlone) {
    City& city = app.city;
    for (int row = 0; row < 12; row++) {
        const auto taxes = city.taxRate;
        const auto budgets = city.serviceBudget;
        const auto rate = [&]() -> int32_t& {
            return row < 4 ? city.taxRate[row] : city.serviceBudget[row - 4];
        };
        click(plus(row));
        EXPECT_EQ(rate(), 110);
        click(minus(row));
        click(minus(row));
        EXPECT_EQ(rate(), 90);
        click(plus(row));
        EXPECT_EQ(city.taxRate, taxes);
        EXPECT_EQ(city.serviceBudget, budgets);
    }
}

TEST_F(BudgetPanelTest, TaxesEndAt20And200) {
    app.city.taxRate = {20, 30, 190, 200};
    draw();
    EXPECT_EQ(look(minus(0)), DISABLED);
    EXPECT_EQ(look(plus(3)), DISABLED);
    click(minus(0));
    click(plus(3));
    click(minus(1));
    click(plus(2));
    EXPECT_EQ(app.city.taxRate, (std::array<int32_t, 4>{20, 20, 200, 200}));
    EXPECT_EQ(look(minus(1)), DISABLED);
    EXPECT_EQ(look(plus(2)), DISABLED);
}

TEST_F(BudgetPanelTest, BudgetsEndAt50And150) {
    app.city.serviceBudget = {50, 60, 140, 150, 100, 100, 100, 100};
    draw();
    EXPECT_EQ(look(minus(4)), DISABLED);
    EXPECT_EQ(look(plus(7)), DISABLED);
    click(minus(4));
    click(plus(7));
    click(minus(5));
    click(plus(6));
    EXPECT_EQ(app.city.serviceBudget, (std::array<int32_t, 8>{50, 50, 150, 150, 100, 100, 100, 100}));
}

// A loaded city may have a rate between the steps.
TEST_F(BudgetPanelTest, NextToItsEndARateStillMovesToIt) {
    app.city.taxRate = {21, 199, 100, 100};
    app.city.serviceBudget = {51, 149, 100, 100, 100, 100, 100, 100};
    draw();
    for (const int row : {0, 1, 4, 5}) {
        EXPECT_EQ(look(minus(row)), NORMAL) << row;
        EXPECT_EQ(look(plus(row)), NORMAL) << row;
    }
    click(minus(0));
    click(plus(1));
    click(minus(4));
    click(plus(5));
    EXPECT_EQ(app.city.taxRate[0], 20);
    EXPECT_EQ(app.city.taxRate[1], 200);
    EXPECT_EQ(app.city.serviceBudget[0], 50);
    EXPECT_EQ(app.city.serviceBudget[1], 150);
}

TEST_F(BudgetPanelTest, InALowWindowTheLastRowsStandOverTheBottomBarAndStillWork) {
    resize(1280, 480); // the scale is 0.75
    const float scale = 0.75f;
    const float y = rowY(11) * scale + 17.0f * scale;
    EXPECT_GT(y, 480.0f - 84.0f * scale);
    click(1280.0f - (306.0f - 296.0f + 14.0f + 15.0f) * scale, y);
    EXPECT_EQ(app.city.serviceBudget[7], 110);
}
