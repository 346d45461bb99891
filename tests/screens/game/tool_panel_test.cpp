#include "app/tools.h"
#include "screens/hud_fixture.h"

class ToolPanelTest : public HudTest {
protected:
    static UiRect row(int index, float top = 62.0f) {
        return {18, top + 38.0f * static_cast<float>(index), 216, 34};
    }
    static UiRect toolRow(int index) { return row(index, 336.0f); }
    static UiRect districtButton(int district) {
        const auto place = static_cast<float>(district - 1);
        const float line = district > 4 ? 1.0f : 0.0f;
        return {18.0f + (place - 4.0f * line) * 55.0f, 412.0f + 34.0f * line, 51, 30};
    }
    void choose(ToolCategory category) { click(row(category)); }
};

static const std::vector<std::string> CATEGORIES = {"Select",    "Roads",     "Zones",   "Services",
                                                    "Utilities", "Districts", "Bulldoze"};

TEST_F(ToolPanelTest, ThePanelAndItsSeparator) {
    draw();
    EXPECT_TRUE(drew({18, 54, 216, 500}, colPanel)); // between the rounded corners
    EXPECT_TRUE(drew({10, 54, 232, 1.5f}, colFrame));
    EXPECT_TRUE(drew({22, 328, 208, 1.5f}, colFrame));
}

TEST_F(ToolPanelTest, SevenCategories) {
    draw();
    for (int category = 0; category < CATEGORY_COUNT; category++) {
        const Label label = textOf(CATEGORIES[category]);
        EXPECT_EQ(look(row(category)), category == 0 ? PRIMARY : NORMAL);
        EXPECT_EQ(label.bold, category == 0);
        EXPECT_EQ(label.size, 16);
        EXPECT_NEAR(middleX(label.rect), 126.0f, 0.5f);
    }
}

TEST_F(ToolPanelTest, EachCategoryShowsItsToolsAndAClickChooses) {
    const std::vector<std::vector<std::string>> tools = {
        {},
        {"Street", "Avenue", "Bus stop"},
        {"Residential", "Commercial", "Offices", "Industrial"},
        {"Police station", "Fire station", "Hospital", "School", "Park", "Bus depot"},
        {"Gas power plant", "Solar farm", "Wind turbine", "Water pump"},
        {"Paint", "Clear"},
        {}};
    app.selectedCellX = app.selectedCellY = 3; // so that no demand is listed under the same words
    int tool = TOOL_STREET;
    for (int category = 1; category < CATEGORY_COUNT - 1; category++) {
        choose(static_cast<ToolCategory>(category));
        EXPECT_EQ(app.currentCategory, category);
        EXPECT_EQ(app.currentTool, tool); // the first of them
        for (int i = 0; i < static_cast<int>(tools[category].size()); i++, tool++) {
            EXPECT_NEAR(middleY(textOf(tools[category][i]).rect), middleY(toolRow(i)), 1.0f);
            click(toolRow(i));
            EXPECT_EQ(app.currentTool, tool) << tools[category][i];
            EXPECT_EQ(look(toolRow(i)), PRIMARY);
            EXPECT_FALSE(textOf(tools[category][i]).bold);
            EXPECT_EQ(look(toolRow(i == 0 ? 1 : 0)), NORMAL);
        }
        EXPECT_EQ(look(toolRow(static_cast<int>(tools[category].size()))), NO_BUTTON);
    }
    EXPECT_EQ(tool, TOOL_BULLDOZE);
}

TEST_F(ToolPanelTest, SelectAndBulldozeChooseTheirToolAtOnceAndListNone) {
    choose(CATEGORY_BULLDOZE);
    EXPECT_EQ(app.currentTool, TOOL_BULLDOZE);
    EXPECT_EQ(look(toolRow(0)), NO_BUTTON);
    choose(CATEGORY_SELECT);
    EXPECT_EQ(app.currentTool, TOOL_SELECT);
    EXPECT_EQ(look(toolRow(0)), NO_BUTTON);
}

TEST_F(ToolPanelTest, ChoosingACategoryKeepsAToolOfIt) {
    choose(CATEGORY_ZONES);
    click(toolRow(2));
    choose(CATEGORY_ZONES);
    EXPECT_EQ(app.currentTool, TOOL_OFFICE_ZONE);
}

TEST_F(ToolPanelTest, TheServicesReachBelowThePanelAndStillWork) {
    choose(CATEGORY_SERVICES);
    EXPECT_GT(toolRow(5).y + toolRow(5).h, 554.0f);
    setTool(app, TOOL_POLICE_STATION);
    input.mouseX = 126;
    input.mouseY = 559;
    input.leftPressed = input.leftHeld = 1;
    frame(); // the map below sees the press before the button does
    EXPECT_TRUE(app.city.buildings.empty());
    click(126, 559);
    EXPECT_EQ(app.currentTool, TOOL_BUS_DEPOT);
}

TEST_F(ToolPanelTest, EightDistrictsInTwoRows) {
    choose(CATEGORY_DISTRICTS);
    EXPECT_EQ(app.paintDistrict, 0);
    for (int district = 1; district <= 8; district++) {
        EXPECT_EQ(look(districtButton(district)), NORMAL);
        click(districtButton(district));
        EXPECT_EQ(app.paintDistrict, district);
        EXPECT_EQ(look(districtButton(district)), PRIMARY);
    }
    EXPECT_EQ(app.currentTool, TOOL_PAINT_DISTRICT);
    choose(CATEGORY_ZONES);
    EXPECT_EQ(look(districtButton(8)), NO_BUTTON);
}

TEST_F(ToolPanelTest, DistrictNumbersAreBold) {
    choose(CATEGORY_DISTRICTS);
    int bold = 0;
    for (const Label& text : texts()) bold += text.bold && text.words.size() == 1 && text.size == 16;
    EXPECT_EQ(bold, 8);
}

TEST_F(ToolPanelTest, ItGrowsWithTheWindow) {
    resize(2560, 1440);
    draw();
    EXPECT_EQ(look({36, 124, 432, 68}), PRIMARY);
    EXPECT_EQ(textOf("Select").size, 32);
    click(100, 2 * 62 + 76 + 34);
    EXPECT_EQ(app.currentCategory, CATEGORY_ROADS);
}
