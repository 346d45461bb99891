#include "screens/screen_fixture.h"

#include "sim/city_helpers.h"
#include "sim/save_file.h"
#include "ui/words/languages.h"
#include "ui/words/strings.h"

class TitleScreenTest : public ScreenTest {};

TEST_F(TitleScreenTest, TheWholeWindowIsShadedDarkerTowardsItsFoot) {
    show();
    EXPECT_EQ(windowShades(), (std::vector<std::pair<float, float>>{{0.15f, 0.75f}}));
}

TEST_F(TitleScreenTest, TheLogoIsASquareOf200AtSixHundredthsOfTheHeight) {
    show();
    EXPECT_EQ(textureAt(541.0f, 44.2f), app.logoTexture);
    EXPECT_EQ(textureAt(739.0f, 243.0f), app.logoTexture);
    EXPECT_EQ(textureAt(539.0f, 100.0f), 0u);
    EXPECT_EQ(textureAt(741.0f, 100.0f), 0u);
    EXPECT_EQ(textureAt(640.0f, 42.0f), 0u);
    EXPECT_EQ(textureAt(640.0f, 244.0f), 0u);
}

TEST_F(TitleScreenTest, NameAndSubtitleStandUnderTheLogo) {
    show();
    const DrawnText name = text("Orlavane");
    EXPECT_EQ(name.middle(), 640.0f);
    EXPECT_FLOAT_EQ(name.rect.y, 43.2f + 204.0f);
    EXPECT_EQ(name.size, 50);
    EXPECT_TRUE(name.bold);
    EXPECT_EQ(name.color, packed(colGold));
    const DrawnText subtitle = text("Build a modern city");
    EXPECT_EQ(subtitle.middle(), 640.0f);
    EXPECT_FLOAT_EQ(subtitle.rect.y, 43.2f + 266.0f);
    EXPECT_EQ(subtitle.size, 20);
    EXPECT_FALSE(subtitle.bold);
    EXPECT_EQ(subtitle.color, packed(colText));
}

TEST_F(TitleScreenTest, ANewerBuildIsAnnouncedAndNoOtherUpdateState) {
    app.updateManifest.version = "9.1";
    for (int state = UPDATE_IDLE; state <= UPDATE_DOWNLOAD_FAILED; state++) {
        app.updateState = static_cast<UpdateState>(state);
        show();
        EXPECT_EQ(shows("Update 9.1 available"), state == UPDATE_NEWER) << state;
        if (state != UPDATE_NEWER) continue;
        const DrawnText news = text("Update 9.1 available");
        EXPECT_EQ(news.middle(), 640.0f);
        EXPECT_FLOAT_EQ(news.rect.y, 43.2f + 300.0f);
        EXPECT_EQ(news.size, 18);
        EXPECT_TRUE(news.bold);
        EXPECT_EQ(news.color, packed(colGold));
    }
}

TEST_F(TitleScreenTest, AVersionOfAnyLengthIsCut) {
    app.updateState = UPDATE_NEWER;
    app.updateManifest.version = std::string(60000, 'x');
    show();
    EXPECT_TRUE(shows("Update " + std::string(255 - 7, 'x')));
}

TEST_F(TitleScreenTest, FiveButtonsOf320By48StandSixtyApart) {
    app.saveExists = true;
    const uint32_t ids[] = {100, 101, 104, 102, 103};
    const char* labels[] = {"New city", "Continue", "Tutorial", "Settings", "Quit"};
    for (int i = 0; i < 5; i++) {
        const float top = 0.52f * 720.0f + 60.0f * static_cast<float>(i);
        EXPECT_EQ(buttonAt(480.5f, top + 0.5f), ids[i]);
        EXPECT_EQ(buttonAt(799.5f, top + 47.5f), ids[i]);
        EXPECT_EQ(buttonAt(479.5f, top + 20.0f), 0u);
        EXPECT_EQ(buttonAt(800.5f, top + 20.0f), 0u);
        EXPECT_EQ(buttonAt(640.0f, top - 0.5f), 0u);
        EXPECT_EQ(buttonAt(640.0f, top + 48.5f), 0u);
        EXPECT_EQ(text(labels[i]).size, 22) << labels[i];
        EXPECT_EQ(text(labels[i]).bold, i == 0) << labels[i];
        EXPECT_NEAR(text(labels[i]).rect.y + text(labels[i]).rect.h / 2.0f, top + 24.0f, 1.5f);
    }
}

TEST_F(TitleScreenTest, OnlyNewCityIsPrimary) {
    app.saveExists = true;
    show();
    const float top = 0.52f * 720.0f;
    EXPECT_EQ(colorAt(500.0f, top + 24.0f), packed({0.80f, 0.58f, 0.20f, 1.0f}));
    for (int i = 1; i < 5; i++)
        EXPECT_EQ(colorAt(500.0f, top + 24.0f + 60.0f * static_cast<float>(i)),
                  packed({0.30f, 0.26f, 0.22f, 1.0f}));
}

TEST_F(TitleScreenTest, TheKeysAreToldAtTheFoot) {
    show();
    const DrawnText keys = text(tr(STR_KEY_HINT));
    EXPECT_EQ(keys.middle(), 640.0f);
    EXPECT_EQ(keys.rect.y, 690.0f);
    EXPECT_EQ(keys.size, 15);
    EXPECT_EQ(keys.color, packed({0.85f, 0.82f, 0.74f, 0.9f}));
}

TEST_F(TitleScreenTest, TheLayoutGrowsWithTheWindowsHeightAndNotItsWidth) {
    resize(2560, 1440); // the scale is 2
    show();
    EXPECT_EQ(text("Orlavane").size, 100);
    EXPECT_FLOAT_EQ(text("Orlavane").rect.y, 0.06f * 1440.0f + 408.0f);
    EXPECT_EQ(buttonAt(1280.0f - 319.0f, 0.52f * 1440.0f + 1.0f), 100u);
    EXPECT_EQ(buttonAt(1280.0f + 319.0f, 0.52f * 1440.0f + 4 * 120.0f + 95.0f), 103u);
    resize(3000, 480); // and 0.75 at least
    show();
    EXPECT_EQ(text("Orlavane").size, 37);
    EXPECT_EQ(text(tr(STR_KEY_HINT)).size, 11);
    EXPECT_EQ(text(tr(STR_KEY_HINT)).middle(), 1500.0f);
    EXPECT_EQ(text(tr(STR_KEY_HINT)).rect.y, 480.0f - 22.5f);
}

TEST_F(TitleScreenTest, NewCityEntersNewLand) {
    clickOn("New city");
    EXPECT_EQ(app.screen, SCREEN_GAME);
    EXPECT_EQ(app.speed, 1);
    EXPECT_GT(app.city.seed, 0u);    // the land behind the menus has 0
    EXPECT_EQ(app.tutorialStep, -1); // this player has taken the tour
}

TEST_F(TitleScreenTest, ContinueLoadsTheSavedCity) {
    City city = flatCity();
    city.money = 4321.0;
    ASSERT_TRUE(saveCity(city, app.savePath));
    app.saveExists = true;
    clickOn("Continue");
    EXPECT_EQ(app.screen, SCREEN_GAME);
    EXPECT_EQ(app.city.money, 4321.0);
}

TEST_F(TitleScreenTest, ContinueWithASaveThatIsGoneStaysOnTheTitle) {
    app.saveExists = true;
    clickOn("Continue");
    EXPECT_EQ(app.screen, SCREEN_TITLE);
}

TEST_F(TitleScreenTest, ContinueIsDisabledBeforeAnySaveExists) {
    ASSERT_TRUE(saveCity(flatCity(), app.savePath)); // the button asks the record, not the disk
    show();
    EXPECT_EQ(colorAt(500.0f, 0.52f * 720.0f + 84.0f), packed({0.28f, 0.28f, 0.29f, 1.0f}));
    EXPECT_EQ(text("Continue").color, packed({0.55f, 0.55f, 0.56f, 1.0f}));
    clickOn("Continue");
    EXPECT_EQ(app.screen, SCREEN_TITLE);
}

TEST_F(TitleScreenTest, TutorialEntersNewLandAndStartsTheTour) {
    clickOn("Tutorial");
    EXPECT_EQ(app.screen, SCREEN_GAME);
    EXPECT_GT(app.city.seed, 0u);   // the land behind the menus has 0
    EXPECT_EQ(app.tutorialStep, 0); // though this player has taken it before
}

TEST_F(TitleScreenTest, SettingsOpensTheOptionsThatLeadBack) {
    app.returnScreen = SCREEN_GAME; // from an earlier visit
    clickOn("Settings");
    EXPECT_EQ(app.screen, SCREEN_SETTINGS);
    EXPECT_EQ(app.returnScreen, SCREEN_TITLE);
    clickOn("Back");
    EXPECT_EQ(app.screen, SCREEN_TITLE);
}

TEST_F(TitleScreenTest, QuitEndsTheLoop) {
    clickOn("Quit");
    EXPECT_TRUE(app.quitRequested);
}

TEST_F(TitleScreenTest, NothingLeadsBackToTheLauncher) {
    pressKey(KEY_ESC);
    EXPECT_EQ(app.screen, SCREEN_TITLE);
}

TEST_F(TitleScreenTest, WithoutAFontTheButtonsStillWork) {
    fontsShutdown(app.fonts);
    show();
    EXPECT_TRUE(texts().empty());
    clickAt(640.0f, 0.52f * 720.0f + 24.0f);
    EXPECT_EQ(app.screen, SCREEN_GAME);
}

TEST_F(TitleScreenTest, ItSpeaksEveryLanguage) {
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        chooseLanguage(app, language);
        show();
        for (const int id : {STR_GAME_NAME, STR_SUBTITLE, STR_NEW_CITY, STR_CONTINUE, STR_TUTORIAL,
                             STR_SETTINGS, STR_QUIT, STR_KEY_HINT})
            EXPECT_TRUE(shows(tr(id))) << languageAt(language).code << ": " << tr(id);
    }
}
