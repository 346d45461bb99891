#include "screens/screen_fixture.h"

#include "ui/words/languages.h"
#include "ui/words/strings.h"

#include <filesystem>

class SettingsScreenTest : public ScreenTest {
protected:
    SettingsScreenTest() { app.screen = SCREEN_SETTINGS; }

    // Row 0 to 7: a click in the middle of its button.
    void clickRow(int row) { clickAt(789.0f, 139.0f + 21.0f + 50.0f * static_cast<float>(row)); }

    bool fileExists() const { return std::filesystem::exists(app.settingsPath); }
    Settings saved() const {
        Settings settings;
        EXPECT_TRUE(loadSettings(settings, app.settingsPath));
        return settings;
    }
};

TEST_F(SettingsScreenTest, ThePanelIs620By610InTheMiddle) {
    show();
    const uint32_t panel = packed(colPanel);
    EXPECT_EQ(colorAt(332.5f, 100.0f), panel);
    EXPECT_EQ(colorAt(947.5f, 600.0f), panel);
    EXPECT_EQ(colorAt(400.0f, 57.5f), panel);
    EXPECT_EQ(colorAt(400.0f, 662.5f), panel);
    const uint32_t frame = packed(colFrame);
    EXPECT_EQ(colorAt(331.5f, 100.0f), frame);
    EXPECT_EQ(colorAt(949.5f, 100.0f), frame);
    EXPECT_EQ(colorAt(400.0f, 55.5f), frame);
    EXPECT_EQ(colorAt(400.0f, 664.5f), frame);
    EXPECT_NE(colorAt(329.0f, 100.0f), frame);
}

TEST_F(SettingsScreenTest, AtTheSmallestScaleThePanelIs457AndAHalfHigh) {
    resize(1280, 500);
    show();
    const uint32_t frame = packed(colFrame);
    EXPECT_EQ(colorAt(640.0f, 21.5f), frame); // (500 - 457.5) / 2 = 21.25
    EXPECT_NE(colorAt(640.0f, 21.0f), frame);
    EXPECT_EQ(colorAt(640.0f, 478.5f), frame);
    EXPECT_NE(colorAt(640.0f, 479.0f), frame);
}

TEST_F(SettingsScreenTest, OptionsOpenedFromTheGameDimItsInterfaceFirst) {
    using Shades = std::vector<std::pair<float, float>>;
    show();
    EXPECT_EQ(windowShades(), (Shades{{0.35f, 0.75f}}));
    EXPECT_FALSE(shows("Menu"));
    app.returnScreen = SCREEN_GAME;
    show();
    EXPECT_EQ(windowShades(), (Shades{{0.35f, 0.35f}, {0.35f, 0.75f}}));
    EXPECT_TRUE(shows("Menu"));
}

TEST_F(SettingsScreenTest, TheMenuUnderTheOptionsIsDeadAndTheInterfaceBesideThemIsNot) {
    app.returnScreen = SCREEN_GAME;
    app.paused = true;
    show();
    for (int row = 0; row < 5; row++) { // "Resume" to "Quit to title"
        clickAt(600.0f, 286.0f + 54.0f * static_cast<float>(row));
        EXPECT_EQ(app.screen, SCREEN_SETTINGS) << row;
        EXPECT_TRUE(app.paused) << row;
        EXPECT_FALSE(app.saveExists) << row;
    }
    clickAt(1253.0f, 22.0f);
    EXPECT_EQ(app.speed, 3);
}

TEST_F(SettingsScreenTest, TheTitleStandsAtTheTop) {
    show();
    const DrawnText title = text("Settings");
    EXPECT_EQ(title.middle(), 640.0f);
    EXPECT_EQ(title.rect.y, 77.0f);
    EXPECT_EQ(title.size, 34);
    EXPECT_TRUE(title.bold);
    EXPECT_EQ(title.color, packed(colGold));
}

TEST_F(SettingsScreenTest, EightRowsHaveTheirCaptionsSecondLinesAndButtons) {
    struct Row {
        const char* caption;
        const char* hint;
        const char* value;
    };
    const Row rows[] = {
        {"Resolution", "Used in windowed mode", "1600 x 900"},
        {"Display", nullptr, "Windowed"},
        {"Graphics", "Shadows 1024", "Medium"},
        {"Vertical sync", "Caps the frame rate to the monitor", "On"},
        {"Show FPS", nullptr, "Off"},
        {"Music volume", nullptr, "50%"},
        {"Sound effects", nullptr, "70%"},
        {"Language", "Changes all text at once", "English"},
    };
    show();
    for (int i = 0; i < 8; i++) {
        const float top = 139.0f + 50.0f * static_cast<float>(i);
        const DrawnText caption = text(rows[i].caption);
        EXPECT_EQ(caption.rect.x, 366.0f);
        EXPECT_EQ(caption.rect.y, top + 4.0f);
        EXPECT_EQ(caption.size, 19);
        EXPECT_EQ(caption.color, packed(colText));
        const DrawnText value = text(rows[i].value);
        EXPECT_EQ(value.middle(), 789.0f);
        EXPECT_EQ(value.size, 19);
        EXPECT_NEAR(value.rect.y + value.rect.h / 2.0f, top + 21.0f, 1.5f);
        if (!rows[i].hint) continue;
        const DrawnText hint = text(rows[i].hint);
        EXPECT_EQ(hint.rect.x, 366.0f);
        EXPECT_EQ(hint.rect.y, top + 30.0f);
        EXPECT_EQ(hint.size, 14);
        EXPECT_EQ(hint.color, packed(colHint));
    }
    EXPECT_EQ(texts().size(), 1u + 8 + 4 + 8 + 1); // title, captions, second lines, buttons, "Back"
}

TEST_F(SettingsScreenTest, EachRowHasAButtonOf250By42) {
    for (uint32_t row = 0; row < 8; row++) {
        const float top = 139.0f + 50.0f * static_cast<float>(row);
        EXPECT_EQ(buttonAt(664.5f, top + 0.5f), 200 + row);
        EXPECT_EQ(buttonAt(913.5f, top + 41.5f), 200 + row);
        EXPECT_EQ(buttonAt(663.5f, top + 20.0f), 0u);
        EXPECT_EQ(buttonAt(914.5f, top + 20.0f), 0u);
        EXPECT_EQ(buttonAt(789.0f, top + 42.5f), 0u);
        EXPECT_EQ(colorAt(670.0f, top + 21.0f), packed({0.30f, 0.26f, 0.22f, 1.0f}));
    }
}

TEST_F(SettingsScreenTest, ResolutionWrapsThroughItsThreeSizes) {
    const char* sizes[] = {"1920 x 1080", "1280 x 720", "1600 x 900"};
    const int values[] = {2, 0, 1};
    for (int i = 0; i < 3; i++) {
        app.displayDirty = false;
        clickRow(0);
        EXPECT_EQ(app.settings.resolution, values[i]);
        EXPECT_EQ(saved().resolution, values[i]);
        EXPECT_TRUE(app.displayDirty);
        show();
        EXPECT_TRUE(shows(sizes[i]));
    }
}

TEST_F(SettingsScreenTest, DisplayFlipsBetweenWindowAndFullScreen) {
    clickRow(1);
    EXPECT_TRUE(app.settings.fullscreen);
    EXPECT_TRUE(saved().fullscreen);
    EXPECT_TRUE(app.displayDirty);
    show();
    EXPECT_TRUE(shows("Fullscreen"));
    clickRow(1);
    EXPECT_FALSE(saved().fullscreen);
}

TEST_F(SettingsScreenTest, GraphicsWrapsThroughItsThreeQualities) {
    const char* names[] = {"High", "Low", "Medium"};
    const char* hints[] = {"Shadows 2048", "No shadows", "Shadows 1024"};
    const int values[] = {2, 0, 1};
    for (int i = 0; i < 3; i++) {
        clickRow(2);
        EXPECT_EQ(saved().quality, values[i]);
        show();
        EXPECT_TRUE(shows(names[i]));
        EXPECT_TRUE(shows(hints[i]));
    }
    EXPECT_FALSE(app.displayDirty); // read where it is used
}

TEST_F(SettingsScreenTest, VerticalSyncFlips) {
    clickRow(3);
    EXPECT_FALSE(app.settings.vsync);
    EXPECT_FALSE(saved().vsync);
    EXPECT_TRUE(app.displayDirty);
    clickRow(3);
    EXPECT_TRUE(saved().vsync);
}

TEST_F(SettingsScreenTest, ShowFpsFlips) {
    clickRow(4);
    EXPECT_TRUE(app.settings.showFps);
    EXPECT_TRUE(saved().showFps);
    EXPECT_FALSE(app.displayDirty);
    clickRow(4);
    EXPECT_FALSE(saved().showFps);
}

TEST_F(SettingsScreenTest, MusicVolumeGoesUpInStepsOf25AndStartsAgain) {
    for (const int expected : {75, 100, 0, 25, 50}) {
        clickRow(5);
        EXPECT_EQ(app.settings.musicVolume, expected);
        EXPECT_EQ(saved().musicVolume, expected);
        EXPECT_FLOAT_EQ(app.audio.musicVolume, static_cast<float>(expected) / 100.0f); // heard at once
    }
    EXPECT_EQ(app.settings.sfxVolume, 70);
    EXPECT_FALSE(app.displayDirty);
}

TEST_F(SettingsScreenTest, AnEffectsVolumeOffTheStepsGoesPastAHundredOnceAndThenToZero) {
    for (const int expected : {95, 120, 0, 25}) {
        clickRow(6);
        EXPECT_EQ(app.settings.sfxVolume, expected);
        EXPECT_FLOAT_EQ(app.audio.sfxVolume, static_cast<float>(expected) / 100.0f);
        show();
        EXPECT_TRUE(shows(std::to_string(expected) + "%"));
    }
    EXPECT_EQ(app.settings.musicVolume, 50);
}

TEST_F(SettingsScreenTest, AVolumePastAHundredIsStoredAsItIs) {
    app.settings.sfxVolume = 95;
    clickRow(6);
    std::string text(4096, '\0');
    std::FILE* file = std::fopen(app.settingsPath.c_str(), "rb");
    ASSERT_NE(file, nullptr);
    text.resize(std::fread(text.data(), 1, text.size(), file));
    std::fclose(file);
    EXPECT_NE(text.find("sfxVolume=120\n"), std::string::npos);
}

TEST_F(SettingsScreenTest, LanguageWalksThroughAllFourteenAndChangesEveryTextAtOnce) {
    for (int i = 1; i <= LANGUAGE_COUNT; i++) {
        const int language = i % LANGUAGE_COUNT;
        clickRow(7);
        EXPECT_EQ(app.settings.language, language);
        EXPECT_EQ(saved().language, language);
        EXPECT_EQ(currentLanguage(), language);
        EXPECT_EQ(app.fonts.language, language);
        EXPECT_TRUE(shows(tr(STR_BACK))); // drawn after the row, in the same frame
        show();
        EXPECT_TRUE(shows(languageAt(language).nativeName));
        for (const int id : {STR_SETTINGS, STR_RESOLUTION, STR_DISPLAY, STR_GRAPHICS, STR_VSYNC, STR_SHOW_FPS,
                             STR_MUSIC_VOLUME, STR_EFFECTS_VOLUME, STR_LANGUAGE, STR_LANGUAGE_HINT, STR_BACK})
            EXPECT_TRUE(shows(tr(id))) << languageAt(language).code << ": " << tr(id);
    }
}

TEST_F(SettingsScreenTest, InNoLanguageACaptionRunsIntoItsButton) {
    for (const int height : {540, 720, 1440}) {
        resize(height * 2, height);
        const float cx = static_cast<float>(height);
        const float s = static_cast<float>(height) / 720.0f;
        for (int language = 0; language < LANGUAGE_COUNT; language++)
            for (int quality = 0; quality < 3; quality++) {
                chooseLanguage(app, language);
                app.settings.quality = quality;
                show();
                int captions = 0;
                for (const DrawnText& line : texts()) {
                    if (line.rect.x > cx - 270.0f * s) continue;
                    captions++;
                    EXPECT_LT(line.right(), cx + 24.0f * s) << languageAt(language).code << ": " << line.text;
                }
                EXPECT_EQ(captions, 8 + 4); // with their second lines
            }
    }
}

TEST_F(SettingsScreenTest, BeforeAnyChoiceTheLanguageOfTheSystemShowsAndOneClickStoresTheNext) {
    app.settings.language = -1;
    setCurrentLanguage(5);
    fontsSetLanguage(app.fonts, 5);
    show();
    EXPECT_TRUE(shows("Français"));
    EXPECT_EQ(app.settings.language, -1);
    EXPECT_FALSE(fileExists());
    clickRow(7);
    EXPECT_EQ(saved().language, 6);
    show();
    EXPECT_TRUE(shows("Italiano"));
}

TEST_F(SettingsScreenTest, QualityBelowItsTableReadsAsMedium) {
    app.settings.quality = -7;
    show();
    EXPECT_TRUE(shows("Medium"));
    EXPECT_TRUE(shows("Shadows 1024"));
}

TEST_F(SettingsScreenTest, AClickBringsHandEditedValuesBackIntoTheirTables) {
    for (int value = -9; value < 0; value++) {
        app.settings.resolution = app.settings.quality = value;
        clickRow(0);
        clickRow(2);
        EXPECT_EQ(app.settings.resolution, (value + 10) % 3) << value;
        EXPECT_EQ(app.settings.quality, (value + 10) % 3) << value;
    }
}

TEST_F(SettingsScreenTest, WithoutAClickNothingIsSaved) {
    show();
    moveTo(789.0f, 160.0f);
    show();
    EXPECT_FALSE(fileExists());
    EXPECT_FALSE(app.displayDirty);
}

TEST_F(SettingsScreenTest, AFileThatCannotBeWrittenLosesOnlyTheFile) {
    std::filesystem::create_directories(app.settingsPath); // a folder stands in its place
    clickRow(4);
    EXPECT_TRUE(app.settings.showFps);
    EXPECT_EQ(app.screen, SCREEN_SETTINGS);
}

TEST_F(SettingsScreenTest, BackLeadsToWhereTheOptionsWereOpened) {
    for (const Screen from : {SCREEN_TITLE, SCREEN_GAME}) {
        app.screen = SCREEN_SETTINGS;
        app.returnScreen = from;
        app.paused = true;
        EXPECT_EQ(buttonAt(540.5f, 603.5f), 208u);
        EXPECT_EQ(buttonAt(739.5f, 648.5f), 208u);
        EXPECT_EQ(buttonAt(539.5f, 620.0f), 0u);
        EXPECT_EQ(buttonAt(640.0f, 649.5f), 0u);
        EXPECT_EQ(text("Back").size, 19);
        EXPECT_EQ(colorAt(560.0f, 626.0f), packed({0.80f, 0.58f, 0.20f, 1.0f}));
        clickOn("Back");
        EXPECT_EQ(app.screen, from);
        EXPECT_TRUE(app.paused); // the menu that led here is open again
    }
}
