// The words of the game, in every language. docs/translating.md tells what these rules are for.
#include "ui/words/strings.h"

#include "ui/text/font_gate.h"
#include "ui/text/shape_text.h"
#include "ui/text/spoken_fonts.h"
#include "ui/text/text_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

static const char* textOf(int id, int language) { return stringTable[id * LANGUAGE_COUNT + language]; }

static std::string placeOf(int id, int language) {
    return std::to_string(id) + " in " + languageAt(language).code;
}

// The code points of a text, or nothing when it is no UTF-8 in its shortest form.
static std::vector<uint32_t> codePoints(const std::string& text) {
    std::vector<uint32_t> points;
    for (size_t i = 0; i < text.size();) {
        const auto byte = [&](size_t at) { return static_cast<uint8_t>(at < text.size() ? text[at] : 0); };
        const uint8_t lead = byte(i);
        const size_t length = lead < 0x80   ? 1
                              : lead < 0xC2 ? 0
                              : lead < 0xE0 ? 2
                              : lead < 0xF0 ? 3
                              : lead < 0xF5 ? 4
                                            : 0;
        if (length == 0) return {};
        uint32_t point = length == 1 ? lead : lead & (0x7Fu >> length);
        for (size_t k = 1; k < length; k++) {
            if ((byte(i + k) & 0xC0) != 0x80) return {};
            point = point << 6 | (byte(i + k) & 0x3Fu);
        }
        constexpr uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (point < smallest[length] || (point >= 0xD800 && point < 0xE000) || point > 0x10FFFF) return {};
        points.push_back(point);
        i += length;
    }
    return points;
}

// What printf would take from the text, in its order: "%d", "%%", ...
static std::vector<std::string> placeholders(const std::string& text) {
    std::vector<std::string> found;
    for (size_t i = text.find('%'); i != std::string::npos; i = text.find('%', i)) {
        const size_t end = text.find_first_not_of("+-0123456789. ", i + 1);
        const size_t length = end == std::string::npos ? std::string::npos : end + 1 - i;
        found.push_back(text.substr(i, length));
        i += found.back().size();
    }
    return found;
}

static std::vector<std::string> withoutPercent(std::vector<std::string> list) {
    std::erase(list, "%%");
    return list;
}

// The rows with placeholders; no other row goes through printf.
static std::vector<std::string> expectedPlaceholders(int id) {
    static const std::set<int> numbers = {34, 35, 36, 78, 84, 86, 87, 88, 113, 142, 169, 170, 175};
    static const std::set<int> percents = {37, 44, 165, 176};
    static const std::set<int> pairs = {42, 171, 177};
    static const std::set<int> words = {73, 74, 178, 179, 180, 181, 221, 223, 224, 237, 240, 252, 258};
    if (numbers.count(id)) return {"%d"};
    if (percents.count(id)) return {"%d", "%%"};
    if (pairs.count(id)) return {"%d", "%d"};
    if (id == 191) return {"%d", "%d", "%d", "%d", "%%"};
    if (words.count(id)) return {"%s"};
    if (id == 203) return {"%.1f"};
    if (id == 274) return {"%s", "%s"};
    return {};
}

constexpr int UNFORMATTED_PERCENT = 56; // drawn as it stands

// --- The texts

TEST(StringTable, EveryTextIsThereInEveryLanguage) {
    for (int id = 0; id < STRING_COUNT; id++)
        for (int language = 0; language < LANGUAGE_COUNT; language++) {
            const char* text = textOf(id, language);
            ASSERT_NE(text, nullptr) << placeOf(id, language);
            EXPECT_STRNE(text, "") << placeOf(id, language);
        }
}

TEST(StringTable, EveryTextIsUtf8WithoutControlCharacters) {
    for (int id = 0; id < STRING_COUNT; id++)
        for (int language = 0; language < LANGUAGE_COUNT; language++) {
            const auto points = codePoints(textOf(id, language));
            EXPECT_FALSE(points.empty()) << placeOf(id, language);
            for (const uint32_t point : points)
                EXPECT_TRUE(point >= ' ' && point != 0x7F && point != 0xFEFF && point != 0xFFFD)
                    << placeOf(id, language);
        }
}

TEST(StringTable, NoTextBeginsOrEndsWithABlank) {
    for (int id = 0; id < STRING_COUNT; id++)
        for (int language = 0; language < LANGUAGE_COUNT; language++)
            for (const std::string blank : {" ", "\u00A0", "\u202F", "\u3000"}) {
                const std::string text = textOf(id, language);
                EXPECT_FALSE(text.starts_with(blank) || text.ends_with(blank)) << placeOf(id, language);
            }
}

TEST(StringTable, ThreeDotsAreOneCharacterInEveryTranslation) {
    for (int id = 0; id < STRING_COUNT; id++)
        for (int language = 1; language < LANGUAGE_COUNT; language++)
            EXPECT_EQ(std::string(textOf(id, language)).find("..."), std::string::npos)
                << placeOf(id, language);
}

TEST(StringTable, APlaceholderIsOfTheSameKindAndInTheSameOrderInEveryLanguage) {
    for (int id = 0; id < STRING_COUNT; id++)
        for (int language = 0; language < LANGUAGE_COUNT; language++) {
            if (id == UNFORMATTED_PERCENT) continue;
            const auto found = placeholders(textOf(id, language));
            const auto expected = expectedPlaceholders(id);
            EXPECT_EQ(withoutPercent(found), withoutPercent(expected)) << placeOf(id, language);
            // The sign itself may stand before its number.
            EXPECT_EQ(found.size(), expected.size()) << placeOf(id, language);
        }
}

TEST(StringTable, TheGoalOfTheMetropolisHasOnePlainPercentSign) {
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        const std::string text = textOf(UNFORMATTED_PERCENT, language);
        EXPECT_EQ(std::count(text.begin(), text.end(), '%'), 1) << languageAt(language).code;
        EXPECT_NE(text.find("60"), std::string::npos) << languageAt(language).code;
        EXPECT_NE(text.find("5000"), std::string::npos) << languageAt(language).code;
    }
}

TEST(StringTable, TheNameAndTheDateAreTheSameEverywhere) {
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        EXPECT_STREQ(textOf(STR_GAME_NAME, language), "Orlavane");
        EXPECT_STREQ(textOf(STR_DATE_FORMAT, language), "%s %s");
    }
}

TEST(StringTable, RowsThatAreKnownReadAsTheyDo) {
    const struct {
        int id;
        const char *code, *text;
    } rows[] = {{1, "pl", "Buduj nowoczesne miasto"},
                {1, "zh", "建造一座现代化城市"},
                {1, "ar", "ابنِ مدينة حديثة"},
                {34, "zh", "第 %d 天"},
                {34, "ja", "%d日目"},
                {37, "fr", "Bonheur %d %%"}, // a plain blank: the bar never breaks its line
                {37, "tr", "Mutluluk: %d%%"},
                {56, "tr", "5000 yurttaş ve %60 mutluluk"},
                {56, "ar", "5000 نسمة ورضا بنسبة 60%"}};
    for (const auto& row : rows) EXPECT_STREQ(textOf(row.id, languageFromCode(row.code)), row.text);
}

// --- One thing has one name. The English words are fixed, so where they use two the tests begin behind them.

constexpr struct {
    const char *before, *after;
} QUOTATION_MARKS[LANGUAGE_COUNT] = {
    {"", ""},   {"„", "”"}, {"“", "”"}, {"«", "»"}, {"„", "“"},   {"«\u00A0", "\u00A0»"}, {"«", "»"},
    {"«", "»"}, {"«", "»"}, {"“", "”"}, {"“", "”"}, {"「", "」"}, {"\"", "\""},           {"‘", "’"}};

static void expectQuoted(int sentence, int button, int language) {
    const std::string name = QUOTATION_MARKS[language].before + std::string(textOf(button, language)) +
                             QUOTATION_MARKS[language].after;
    const std::string text = textOf(sentence, language);
    EXPECT_NE(text.find(name), std::string::npos)
        << placeOf(sentence, language) << ": no " << name << " in " << text;
}

TEST(StringTable, AButtonIsQuotedByItsName) {
    constexpr struct {
        int sentence, button;
    } quotes[] = {{STR_SETUP_START_HINT, STR_SETUP_NEXT},
                  {STR_SETUP_START_HINT, STR_SETUP_CANCEL},
                  {STR_SETUP_CLOSE_GAME, STR_BACK},
                  {STR_SETUP_CLOSE_GAME, STR_SETUP_INSTALL},
                  {STR_UPDATE_NEWER_TEXT, STR_UPDATE_BUTTON},
                  {STR_TUTORIAL_2, STR_ROADS},
                  {STR_TUTORIAL_4, STR_UTILITIES}};
    for (int language = 0; language < LANGUAGE_COUNT; language++)
        for (const auto& quote : quotes) expectQuoted(quote.sentence, quote.button, language);
}

TEST(StringTable, TheHintOnDistrictsNamesTheToolThatPaintsThem) {
    for (int language = 1; language < LANGUAGE_COUNT; language++)
        expectQuoted(STR_DISTRICT_HINT, STR_PAINT, language);
}

TEST(StringTable, TheScreenThatThePauseMenuLeadsToIsTheOneOfTheEndScreen) {
    for (int language = 1; language < LANGUAGE_COUNT; language++) {
        const std::string name = textOf(STR_MAIN_MENU, language);
        size_t second = 1;
        while ((static_cast<uint8_t>(name[second]) & 0xC0) == 0x80) second++;
        // Inside a sentence its first letter may be small.
        EXPECT_NE(std::string(textOf(STR_QUIT_TO_TITLE, language)).find(name.substr(second)),
                  std::string::npos)
            << languageAt(language).code;
    }
}

// --- The texts in their fonts

struct StringFonts : SpokenFonts {};

TEST_F(StringFonts, HoldEveryCharacterOfTheirLanguageAfterShaping) {
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        speak(language);
        TTF_Font* latin = fonts.latinPath.empty() ? nullptr : TTF_OpenFont(fonts.latinPath.c_str(), 16);
        for (const bool bold : {false, true}) {
            TTF_Font* font = fontAt(fonts, 16, bold);
            for (int id = 0; id < STRING_COUNT; id++)
                for (const uint32_t point : codePoints(shapeText(tr(id), fonts.shapeMode)))
                    EXPECT_TRUE(TTF_GlyphIsProvided32(font, point) ||
                                (latin && point < 0x80 && TTF_GlyphIsProvided32(latin, point)))
                        << placeOf(id, language) << " U+" << std::hex << point;
        }
        if (latin) TTF_CloseFont(latin);
    }
}

// The labels of a kind of button, with its inner width and font size at the scale of 1.
struct ButtonLabels {
    std::vector<int> labels;
    float width, size;
    bool bold;
};

static std::vector<int> rowsFrom(int first, int last) {
    std::vector<int> rows;
    for (int id = first; id <= last; id++) rows.push_back(id);
    return rows;
}

TEST_F(StringFonts, LetNoLabelStickOutOfItsButton) {
    const ButtonLabels groups[] = {
        {{STR_NEW_CITY}, 320, 22, true},
        {{STR_CONTINUE, STR_TUTORIAL, STR_SETTINGS, STR_QUIT}, 320, 22, false},
        {{STR_FULLSCREEN, STR_WINDOWED, STR_QUALITY_LOW, STR_QUALITY_MEDIUM, STR_QUALITY_HIGH, STR_ON,
          STR_OFF},
         250,
         19,
         false},
        {{STR_BACK}, 200, 19, false},
        {{STR_RESUME}, 280, 19, true},
        {{STR_SAVE_GAME, STR_LOAD_GAME, STR_SETTINGS, STR_QUIT_TO_TITLE}, 280, 19, false},
        {{STR_KEEP_BUILDING, STR_NEW_CITY, STR_MAIN_MENU}, 280, 20, false},
        {rowsFrom(115, 121), 216, 16, true},
        {rowsFrom(96, 112), 216, 16, false},
        {{114, 152}, 216, 16, false},
        {{STR_ON, STR_OFF}, 150, 16, false},
        {{STR_TUTORIAL_NEXT, STR_TUTORIAL_SKIP, STR_TUTORIAL_FINISH}, 140, 18, false},
        {{STR_MENU}, 84, 17, false},
    };
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        speak(language);
        for (const float scale : {0.75f, 1.0f, 2.0f})
            for (const ButtonLabels& group : groups)
                for (const int id : group.labels) {
                    const float inner = group.width * scale - 16.0f;
                    const int size = static_cast<int>(group.size * scale);
                    const int fitted = fontsFitSize(fonts, tr(id), size, inner, group.bold);
                    EXPECT_LE(static_cast<float>(fontsMeasure(fonts, tr(id), fitted, group.bold)), inner)
                        << placeOf(id, language) << " at " << scale;
                }
    }
}
