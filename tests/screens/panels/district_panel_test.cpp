#include "app/tools.h"
#include "screens/hud_fixture.h"

class DistrictPanelTest : public HudTest {
protected:
    static constexpr UiRect TAX = {1106, 180, 150, 36};
    static UiRect policy(int i) { return {1106, 230.0f + 46.0f * static_cast<float>(i), 150, 36}; }

    DistrictPanelTest() {
        setCategory(app, CATEGORY_DISTRICTS);
        app.paintDistrict = 3;
    }
};

TEST_F(DistrictPanelTest, TitleHintTaxAndPolicies) {
    draw();
    expectText("District 3", 988, 68, 20, colGold, ALIGN_LEFT, true);
    expectText("Tax", 988, 189, 16, colText);
    expectText("Smoke-free", 988, 239, 16, colText);
    expectText("No trucks", 988, 285, 16, colText);
    expectText("Transit first", 988, 331, 16, colText);
    EXPECT_EQ(look(TAX), NORMAL);
    std::string hint;
    for (const Label& text : texts())
        if (text.rect.x == 988.0f && text.rect.y >= 106.0f && text.rect.y < 180.0f) hint += text.words;
    EXPECT_EQ(hint.rfind("Pick a district, then paint", 0), 0u) << hint;
}

TEST_F(DistrictPanelTest, TheTaxGoesRound) {
    for (const char* level : {"Normal", "High", "Low", "Normal"}) {
        draw();
        bool shown = false;
        for (const Label& text : texts())
            shown |= text.words == level && std::abs(middleX(text.rect) - middleX(TAX)) < 1.0f;
        EXPECT_TRUE(shown) << level;
        click(TAX);
    }
    EXPECT_EQ(app.city.districtTax, (std::array<int32_t, 9>{1, 1, 1, 2, 1, 1, 1, 1, 1}));
}

TEST_F(DistrictPanelTest, ATaxOfAWildSaveReadsAsTheNearestLevel) {
    for (const auto& [tax, level] :
         {std::pair(-2147483647, "Low"), {-1, "Low"}, {3, "High"}, {255, "High"}}) {
        app.city.districtTax[3] = tax;
        draw();
        EXPECT_TRUE(says(level)) << tax;
    }
}

TEST_F(DistrictPanelTest, PoliciesGoOnAndOffOneByOne) {
    constexpr uint8_t BITS[] = {1, 2, 4};
    for (int i = 0; i < 3; i++) {
        EXPECT_FALSE(says("On"));
        click(policy(i));
        EXPECT_EQ(app.city.districtPolicy[3], BITS[i]);
        EXPECT_EQ(look(policy(i)), PRIMARY);
        EXPECT_NEAR(middleY(textOf("On").rect), middleY(policy(i)), 1.0f);
        click(policy(i));
        EXPECT_EQ(app.city.districtPolicy[3], 0);
        EXPECT_EQ(look(policy(i)), NORMAL);
    }
    for (int i = 0; i < 3; i++) click(policy(i));
    EXPECT_EQ(app.city.districtPolicy[3], 7);
}

TEST_F(DistrictPanelTest, NoDistrictShowsEntryZeroAndItsButtonsDoNothing) {
    for (const int district : {0, 9, -5, 2147483647}) {
        app.paintDistrict = district;
        app.city.districtTax[0] = 2;
        app.city.districtPolicy[0] = POLICY_NO_TRUCKS;
        const auto taxes = app.city.districtTax;
        const auto policies = app.city.districtPolicy;
        draw();
        EXPECT_TRUE(says("District " + std::to_string(district)));
        EXPECT_TRUE(says("High"));
        EXPECT_EQ(look(policy(1)), PRIMARY);
        click(TAX);
        for (int i = 0; i < 3; i++) click(policy(i));
        EXPECT_EQ(app.city.districtTax, taxes);
        EXPECT_EQ(app.city.districtPolicy, policies);
    }
}
