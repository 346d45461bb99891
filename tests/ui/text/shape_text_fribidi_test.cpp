// The Arabic of the game, held against FriBidi's.
#include "ui/text/shape_text.h"
#include "ui/words/strings.h"

#include <fribidi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

static std::string arabic(const std::string& text) { return shapeText(text.c_str(), SHAPE_ARABIC); }

static std::u32string decode(const std::string& text) {
    std::u32string points(text.size() + 1, U'\0');
    const FriBidiStrIndex count = fribidi_charset_to_unicode(FRIBIDI_CHAR_SET_UTF8, text.c_str(),
                                                             static_cast<FriBidiStrIndex>(text.size()),
                                                             reinterpret_cast<FriBidiChar*>(points.data()));
    points.resize(static_cast<size_t>(count));
    return points;
}

static std::string encode(const std::u32string& points) {
    std::string text(points.size() * 4 + 1, '\0');
    const FriBidiStrIndex length =
        fribidi_unicode_to_charset(FRIBIDI_CHAR_SET_UTF8, reinterpret_cast<const FriBidiChar*>(points.data()),
                                   static_cast<FriBidiStrIndex>(points.size()), text.data());
    text.resize(static_cast<size_t>(length));
    return text;
}

// Joined and in visual order, in a paragraph from right to left; marks stay behind their letters' order.
static std::string byFriBidi(const std::string& text) {
    constexpr FriBidiFlags flags =
        FRIBIDI_FLAG_SHAPE_MIRRORING | FRIBIDI_FLAG_SHAPE_ARAB_PRES | FRIBIDI_FLAG_SHAPE_ARAB_LIGA;
    std::u32string points = decode(text);
    const auto length = static_cast<FriBidiStrIndex>(points.size());
    auto* characters = reinterpret_cast<FriBidiChar*>(points.data());
    std::vector<FriBidiCharType> types(points.size());
    std::vector<FriBidiBracketType> brackets(points.size());
    std::vector<FriBidiLevel> levels(points.size());
    std::vector<FriBidiJoiningType> joins(points.size());
    FriBidiParType direction = FRIBIDI_PAR_RTL;
    fribidi_get_bidi_types(characters, length, types.data());
    fribidi_get_bracket_types(characters, length, types.data(), brackets.data());
    EXPECT_NE(
        fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), length, &direction, levels.data()),
        0);
    fribidi_get_joining_types(characters, length, joins.data());
    fribidi_join_arabic(types.data(), length, levels.data(), joins.data());
    fribidi_shape(flags, levels.data(), length, joins.data(), characters);
    EXPECT_NE(
        fribidi_reorder_line(flags, types.data(), length, 0, direction, levels.data(), characters, nullptr),
        0);
    std::erase(points, static_cast<char32_t>(FRIBIDI_CHAR_FILL));     // what a ligature left
    std::replace(points.begin(), points.end(), U'\u0621', U'\uFE80'); // which it leaves, having one form only
    return encode(points);
}

TEST(ShapeArabicAgainstFriBidi, RealWordsAreTheSame) {
    for (const char* word :
         {"مدينة",  "حديثة",   "السلام", "عليكم",     "كهرباء", "ماء",  "شارع",  "لا",     "الأحياء",
          "إلغاء",  "الآن",    "سؤال",   "مسؤول",     "رئيس",   "شاطئ", "قراءة", "مستشفى", "بناء",
          "ضرائب",  "ميزانية", "اللغة",  "الإعدادات", "طاقة",   "ظلال", "غابة",  "ذهب",    "ثلاثة",
          "خزينة",  "قطار",    "زراعة",  "وظائف",     "هواء",   "جسر",  "صناعة", "ملآن",   "للإيجار",
          "بالأمس", "الأولى",  "فلاح",   "سكّان",      "ابنِ",    "شرطةٌ", "دَرَجَة",  "مُدُن"})
        EXPECT_EQ(arabic(word), byFriBidi(word)) << word;
}

TEST(ShapeArabicAgainstFriBidi, MadeUpWordsOfEveryLetterAreTheSame) {
    std::mt19937 random(11);
    for (int i = 0; i < 3000; i++) {
        std::u32string word;
        for (uint32_t length = random() % 8 + 1; length > 0; length--) {
            const char32_t letter = U'\u0621' + random() % 42;
            // No letters are U+063B to U+0640; alef maksura stands only at the end of words.
            if ((letter < 0x063B || letter > 0x0640) && letter != 0x0649) word += letter;
        }
        if (random() % 3 == 0) word += U'\u0649';
        EXPECT_EQ(arabic(encode(word)), byFriBidi(encode(word))) << encode(word);
    }
}

// The two rules agree where no sign meets a Latin letter or a digit: those have weak directions of their own
// in FriBidi's.
static bool isPlain(const std::string& row) {
    const std::u32string points = decode(row);
    return std::all_of(points.begin(), points.end(), [](char32_t point) {
        return (point >= 0x0621 && point <= 0x065F) ||
               std::u32string(U" .,:!?()\u060C\u061B\u061F").find(point) != std::u32string::npos;
    });
}

TEST(ShapeArabicAgainstFriBidi, RowsOfTheGameAreTheSame) {
    constexpr int ARABIC_COLUMN = 12;
    int compared = 0;
    for (int id = 0; id < STRING_COUNT; id++) {
        const std::string row = stringTable[id * LANGUAGE_COUNT + ARABIC_COLUMN];
        if (!isPlain(row)) continue;
        compared++;
        EXPECT_EQ(arabic(row), byFriBidi(row)) << id << ' ' << row;
    }
    EXPECT_GT(compared, 200);
}
