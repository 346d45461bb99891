#include "screens/hud_fixture.h"
#include "sim/city_helpers.h"

class StatisticsPanelTest : public HudTest {
protected:
    StatisticsPanelTest() { app.currentPanel = PANEL_STATISTICS; }

    void expectRow(int row, const char* caption, const char* value, UiColor color = colText) {
        const float y = 108.0f + 24.0f * static_cast<float>(row);
        expectText(caption, 988, y, 15, colMuted);
        expectText(value, 1256, y, 15, color, ALIGN_RIGHT);
    }
};

TEST_F(StatisticsPanelTest, ThirteenFigures) {
    City& city = app.city;
    city.population = 423;
    city.jobs = 187;
    city.workers = 253;
    city.employed = 180;
    city.educatedShare = 0.565f;
    city.happiness = 64.5f;
    city.transitRiders = 17;
    city.commuters = 181;
    city.streetCells = 28;
    city.avenueCells = 1;
    layRoads(city, 10, 10, 11, 10);
    for (const int x : {10, 11}) {
        city.cells[cellIndex(x, 10)].busStop = 1;
        city.trafficLoad[cellIndex(x, 10)] = 0.25f;
        city.pollution[cellIndex(x, 10)] = 0.01f * CELL_COUNT;
    }
    addWorkingBuilding(city, 20, 20, KIND_SCHOOL);
    addWorkingBuilding(city, 21, 20, KIND_WATER_PUMP);
    addBuilding(city, 22, 20, KIND_PARK);
    draw();
    expectText("Statistics", 988, 68, 20, colGold, ALIGN_LEFT, true);
    expectRow(0, "Citizens", "423");
    expectRow(1, "Jobs", "187");
    expectRow(2, "Workers", "253");
    expectRow(3, "Unemployed", "73", colBad);
    expectRow(4, "Educated", "57%");
    expectRow(5, "Happiness", "65%");
    expectRow(6, "Pollution", "2%");
    expectRow(7, "Traffic", "25%");
    expectRow(8, "Bus stops", "2");
    expectRow(9, "Transit riders", "17");
    expectRow(10, "Commuters", "181");
    expectRow(11, "Streets / avenues", "28 / 1");
    expectRow(12, "Working buildings", "2");
}

TEST_F(StatisticsPanelTest, NobodyIsUnemployedBelowZero) {
    app.city.workers = 5;
    app.city.employed = 9;
    draw();
    expectRow(3, "Unemployed", "0");
    app.city.workers = 10;
    draw();
    expectRow(3, "Unemployed", "1", colBad);
    app.city.workers = 2147483647;
    app.city.employed = -2147483647;
    draw();
    expectRow(3, "Unemployed", "2147483647", colBad);
}
