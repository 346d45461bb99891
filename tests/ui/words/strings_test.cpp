#include "ui/words/strings.h"

#include <gtest/gtest.h>

#include <string>

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

TEST(Strings, ARowWithoutATextInALanguageReadsInEnglish) {
    const char* row[LANGUAGE_COUNT] = {"Street", "Ulica", "", nullptr};
    EXPECT_STREQ(textOfRow(row, 0), "Street");
    EXPECT_STREQ(textOfRow(row, 1), "Ulica");
    EXPECT_STREQ(textOfRow(row, 2), "Street");
    EXPECT_STREQ(textOfRow(row, 3), "Street");
    EXPECT_STREQ(textOfRow(row, LANGUAGE_COUNT - 1), "Street");
    row[0] = nullptr;
    EXPECT_EQ(textOfRow(row, 2), nullptr);
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

// Renewed by hand with every wanted change of an English text, which the other languages then follow.
TEST(Strings, TheEnglishTextsAreThoseThatWereTranslated) {
    uint64_t hash = 14695981039346656037u;
    for (int id = 0; id < STRING_COUNT; id++) {
        const std::string text = stringTable[id * LANGUAGE_COUNT];
        for (size_t i = 0; i <= text.size(); i++) // with the zero at its end
            hash = (hash ^ static_cast<uint8_t>(text.c_str()[i])) * 1099511628211u;
    }
    EXPECT_EQ(hash, 4721629856176773711u);
}
