#include "screens/hud_fixture.h"

#include <cmath>
#include <limits>

constexpr UiColor GREEN = {0.40f, 0.80f, 0.45f, 1.0f};
constexpr UiColor RED = {0.90f, 0.40f, 0.35f, 1.0f};

class FinancePanelTest : public HudTest {
protected:
    FinancePanelTest() { app.currentPanel = PANEL_FINANCE; }

    void addDay(float income, float expense) {
        City& city = app.city;
        city.history[HISTORY_INCOME][city.historyCount] = income;
        city.history[HISTORY_EXPENSES][city.historyCount++] = expense;
    }

    // The chart stands from x 988, 268 wide, on y 408; a full bar is 186 high.
    static UiRect bar(int days, int day, bool expense, float share) {
        const float c = 268.0f / static_cast<float>(days);
        const float x = 988.0f + c * static_cast<float>(day) + 0.1f * c + (expense ? 0.45f * c : 0.0f);
        return {x, 408.0f - 186.0f * share, 0.4f * c, 186.0f * share};
    }

    int bars() const {
        int count = 0;
        for (const DrawnRect& drawn : rects()) {
            const bool green = drawn.color.r == GREEN.r && drawn.color.g == GREEN.g;
            const bool red = drawn.color.r == RED.r && drawn.color.g == RED.g;
            count += (green || red) && drawn.rect.y + drawn.rect.h < 410.0f;
        }
        return count;
    }
};

TEST_F(FinancePanelTest, FourSums) {
    app.city.money = 1500.7;
    app.city.lastIncome = 120.9;
    app.city.lastExpense = 100.2;
    draw();
    expectText("Finances", 988, 68, 20, colGold, ALIGN_LEFT, true);
    expectText("Money", 988, 108, 15, colMuted);
    expectText("1500", 1256, 108, 15, colGold, ALIGN_RIGHT);
    expectText("Income per day", 988, 132, 15, colMuted);
    expectText("120", 1256, 132, 15, colGood, ALIGN_RIGHT);
    expectText("Expenses per day", 988, 156, 15, colMuted);
    expectText("100", 1256, 156, 15, colBad, ALIGN_RIGHT);
    expectText("Balance per day", 988, 180, 15, colMuted);
    expectText("20", 1256, 180, 15, colGood, ALIGN_RIGHT); // cut after the subtraction
}

TEST_F(FinancePanelTest, DebtAndLossAreRed) {
    app.city.money = -3.5;
    app.city.lastExpense = 0.5;
    draw();
    expectText("-3", 1256, 108, 15, colBad, ALIGN_RIGHT);
    expectText("0", 1256, 180, 15, colBad, ALIGN_RIGHT);
}

TEST_F(FinancePanelTest, NothingIsNeitherDebtNorLoss) {
    app.city.money = 0.0;
    draw();
    expectText("0", 1256, 108, 15, colGold, ALIGN_RIGHT);
    expectText("0", 1256, 180, 15, colGood, ALIGN_RIGHT);
}

TEST_F(FinancePanelTest, AnEmptyChartIsADarkBox) {
    draw();
    EXPECT_TRUE(drew({994, 214, 256, 200}, {0.05f, 0.05f, 0.05f, 0.9f})); // between the rounded corners
    EXPECT_EQ(bars(), 0);
    EXPECT_TRUE(says("Last 0 days"));
}

TEST_F(FinancePanelTest, BarsInIndexOrderFromTheLeftScaledByTheGreatest) {
    addDay(100, 50);
    addDay(200, 25);
    draw();
    EXPECT_TRUE(drew(bar(2, 0, false, 0.5f), GREEN));
    EXPECT_TRUE(drew(bar(2, 0, true, 0.25f), RED));
    EXPECT_TRUE(drew(bar(2, 1, false, 1.0f), GREEN));
    EXPECT_TRUE(drew(bar(2, 1, true, 0.125f), RED));
    EXPECT_EQ(bars(), 4);
    EXPECT_TRUE(says("Last 2 days"));
}

TEST_F(FinancePanelTest, TheScaleIsOneAtLeast) {
    addDay(0.5f, 0.0f);
    draw();
    EXPECT_TRUE(drew(bar(1, 0, false, 0.5f), GREEN));
    EXPECT_EQ(bars(), 1);
}

TEST_F(FinancePanelTest, SixtyDaysAreNotMadeThicker) {
    for (int day = 0; day < 60; day++) addDay(static_cast<float>(day + 1), 60.0f);
    draw();
    EXPECT_EQ(bars(), 120);
    for (int day = 0; day < 60; day++) {
        EXPECT_TRUE(drew(bar(60, day, false, static_cast<float>(day + 1) / 60.0f), GREEN)) << day;
        EXPECT_TRUE(drew(bar(60, day, true, 1.0f), RED)) << day;
    }
    resize(1280, 480);
    draw();
    int thin = 0;
    for (const DrawnRect& drawn : rects()) thin += drawn.rect.w > 1.3f && drawn.rect.w < 1.35f;
    EXPECT_EQ(thin, 120);
}

TEST_F(FinancePanelTest, TheLegend) {
    draw();
    EXPECT_TRUE(drew({988, 427, 10, 10}, GREEN));
    expectText("Income", 1004, 422, 14, colMuted);
    EXPECT_TRUE(drew({1108, 427, 10, 10}, RED));
    expectText("Expenses", 1124, 422, 14, colMuted);
    expectText("Last 0 days", 988, 448, 14, colText);
}

TEST_F(FinancePanelTest, FiguresOfAWildSaveStayInTheChart) {
    constexpr float INF = std::numeric_limits<float>::infinity();
    for (const float wild : {std::nanf(""), INF, -INF, -5.0f, 3e38f}) addDay(wild, wild);
    app.city.money = 1e300;
    app.city.lastIncome = std::numeric_limits<double>::infinity();
    app.city.lastExpense = std::nan("");
    draw();
    for (const DrawnRect& drawn : rects())
        if (drawn.color.r == GREEN.r && drawn.color.g == GREEN.g && drawn.rect.y < 410.0f) {
            EXPECT_GE(drawn.rect.y, 221.9f);
        }
    for (const UiVertex& vertex : app.ui.vertices) {
        ASSERT_TRUE(std::isfinite(vertex.x));
        ASSERT_TRUE(std::isfinite(vertex.y));
    }
    EXPECT_TRUE(says("9223372036854775807"));
    for (const int count : {-1, 61, 2147483647}) {
        app.city.historyCount = count;
        draw();
        EXPECT_TRUE(says("Last " + std::to_string(count < 0 ? 0 : 60) + " days"));
    }
}
