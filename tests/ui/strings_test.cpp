#include "ui/strings.h"

#include <gtest/gtest.h>

TEST(Strings, ARowReadsInTheLanguageOfTheGame) {
    const char* const subtitles[LANGUAGE_COUNT] = {"Build a modern city",
                                                   "Buduj nowoczesne miasto",
                                                   nullptr,
                                                   nullptr,
                                                   nullptr,
                                                   nullptr,
                                                   nullptr,
                                                   nullptr,
                                                   nullptr,
                                                   nullptr,
                                                   "建造一座现代化城市",
                                                   nullptr,
                                                   "ابنِ مدينة حديثة",
                                                   nullptr};
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        setCurrentLanguage(language);
        if (subtitles[language]) {
            EXPECT_STREQ(tr(1), subtitles[language]);
        }
        for (int id = 0; id < STRING_COUNT; id++)
            EXPECT_EQ(tr(id), stringTable[id * LANGUAGE_COUNT + language]);
    }
    setCurrentLanguage(0);
}

TEST(Strings, AnIdIsTheNumberOfItsRow) {
    setCurrentLanguage(0);
    const struct {
        int id, number;
        const char* text;
    } rows[] = {
        {STR_GAME_NAME, 0, "Orlavane"},
        {STR_KEY_HINT, 13, "WASD / arrows: move   Right-drag: rotate   Wheel: zoom   1-3: speed   Esc: menu"},
        {STR_MENU, 39, "Menu"},
        {STR_SAVE_GAME, 184, "Save game  [F5]"},
        {STR_DEMAND, 226, "Demand"},
        {STR_TUTORIAL, 259, "Tutorial"},
        {STR_SPRING, 270, "Spring"},
        {STR_DATE_FORMAT, 274, "%s %s"}};
    for (const auto& row : rows) {
        EXPECT_EQ(row.id, row.number);
        EXPECT_STREQ(tr(row.id), row.text);
    }
    EXPECT_EQ(STRING_COUNT, 275);
}
