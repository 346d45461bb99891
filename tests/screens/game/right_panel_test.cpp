#include "screens/game/right_panel.h"

#include "app/tools.h"
#include "screens/hud_fixture.h"
#include "sim/city_helpers.h"

// Which of the views stands in the panel.
class RightPanelTest : public HudTest {
protected:
    static constexpr UiRect CROSS = {1230, 64, 28, 28};

    RightPanelTest() {
        addWorkingBuilding(app.city, 20, 20, KIND_SCHOOL);
        layRoads(app.city, 30, 30, 30, 30);
    }

    std::string title() {
        draw();
        for (const Label& text : texts())
            if (text.rect.x == 988.0f && text.rect.y == 68.0f && text.bold) return text.words;
        return "";
    }
};

TEST_F(RightPanelTest, TheFrame) {
    draw();
    EXPECT_TRUE(drew({984, 54, 276, 572}, colPanel)); // between the rounded corners
    EXPECT_TRUE(drew({974, 54, 296, 1.5f}, colFrame));
}

TEST_F(RightPanelTest, WithNothingOpenItShowsTheCityWithoutACross) {
    EXPECT_EQ(title(), "City");
    EXPECT_EQ(look(CROSS), NO_BUTTON);
}

TEST_F(RightPanelTest, WithTheDistrictToolsItShowsTheDistrict) {
    setCategory(app, CATEGORY_DISTRICTS);
    EXPECT_EQ(title(), "District 0");
    EXPECT_EQ(look(CROSS), NO_BUTTON);
}

TEST_F(RightPanelTest, ASelectionStandsInFrontOfTheDistrict) {
    setCategory(app, CATEGORY_DISTRICTS);
    selectCell(app, 30, 30);
    EXPECT_EQ(title(), "Street");
    EXPECT_EQ(look(CROSS), NORMAL);
    EXPECT_TRUE(says("X"));
}

TEST_F(RightPanelTest, AnOpenPanelStandsInFrontOfASelectionThatReturnsWithTheBarsButton) {
    selectCell(app, 20, 20);
    EXPECT_EQ(title(), "School");
    clickOn("Budget");
    EXPECT_EQ(title(), "Taxes");
    clickOn("Budget");
    EXPECT_EQ(title(), "School");
}

TEST_F(RightPanelTest, TheCrossClosesThePanelAndForgetsTheSelection) {
    selectCell(app, 20, 20);
    for (const char* panel : {"Budget", "Finances", "Statistics"}) {
        selectCell(app, 20, 20);
        app.currentPanel = PANEL_NONE;
        clickOn(panel);
        click(CROSS);
        EXPECT_EQ(app.currentPanel, PANEL_NONE);
        EXPECT_EQ(app.selectedBuilding, -1);
        EXPECT_EQ(title(), "City");
    }
    selectCell(app, 30, 30);
    click(CROSS);
    EXPECT_EQ(app.selectedCellX, -1);
    EXPECT_EQ(app.selectedCellY, -1);
    EXPECT_EQ(title(), "City");
}

TEST_F(RightPanelTest, ADemolishedBuildingIsNoSelection) {
    app.selectedBuilding = 0;
    app.city.buildings[0].kind = KIND_CONDEMNED;
    EXPECT_EQ(selectedBuilding(app), nullptr);
    EXPECT_EQ(title(), "City");
    app.selectedCellX = app.selectedCellY = 30;
    EXPECT_EQ(title(), "Street");
}

TEST_F(RightPanelTest, NumbersThatMeanNoBuildingOrCellAreNoSelection) {
    for (const int index : {-1, 1, 1000000, -2147483647 - 1, 2147483647}) {
        app.selectedBuilding = index;
        EXPECT_EQ(selectedBuilding(app), nullptr) << index;
        EXPECT_EQ(title(), "City") << index;
    }
    app.selectedBuilding = 0;
    EXPECT_EQ(selectedBuilding(app), &app.city.buildings[0]);
    app.city.buildings.clear();
    EXPECT_EQ(title(), "City");
    for (const auto& [x, y] : {std::pair{-1, 5}, {5, -1}, {96, 5}, {5, 96}, {2147483647, 2147483647}}) {
        app.selectedCellX = x;
        app.selectedCellY = y;
        EXPECT_EQ(title(), "City") << x << " " << y;
    }
}
