#include "ui/text/shape_text.h"

#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

static std::string arabic(const std::string& text) { return shapeText(text.c_str(), SHAPE_ARABIC); }
static std::string hindi(const std::string& text) { return shapeText(text.c_str(), SHAPE_DEVANAGARI); }

// --- Without shaping

TEST(ShapeNone, ReturnsEveryByteAsItIs) {
    for (const char* text : {"", " ", "Text", "مدينة", "हिन्दी", "\xc3", "\xff\x80 a\xe0\xa4"})
        EXPECT_EQ(shapeText(text, SHAPE_NONE), text);
}

// --- Bytes that are no UTF-8

TEST(ShapeBytes, ASequenceThatTheEndCutsIsAReplacementForEachByte) {
    EXPECT_EQ(hindi("a\xc3"), "a\uFFFD");
    EXPECT_EQ(hindi("a\xe0\xa4"), "a\uFFFD\uFFFD");
    EXPECT_EQ(hindi("\xf0\x9f\x98"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(arabic("a\xc3"), "a\uFFFD");
}

TEST(ShapeBytes, AByteThatLeadsNothingIsAReplacement) {
    EXPECT_EQ(hindi("\x80"
                    "a\xbf\xf8\xff"),
              "\uFFFDa\uFFFD\uFFFD\uFFFD");
}

TEST(ShapeBytes, TheTopBitsOfFollowingBytesAreNotLookedAt) {
    EXPECT_EQ(hindi("\xc3(\xe0$5"), "\xc3\xa8\u0935"); // as C3 A8 and E0 A4 B5
    EXPECT_EQ(hindi("\xc0\xb1\xc1\x81"), "1A");        // longer forms than needed
}

TEST(ShapeBytes, SequencesOfEveryLengthComeBack) {
    EXPECT_EQ(hindi("a\u00e9\u20ac\U0001F600"), "a\u00e9\u20ac\U0001F600");
    for (const char* edge : {"\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xef\xbf\xbf",
                             "\xf0\x90\x80\x80", "\xf7\xbf\xbf\xbf"}) // the last is beyond Unicode
        EXPECT_EQ(hindi(edge), edge);
}

TEST(ShapeBytes, AnyBytesAreBorne) {
    std::mt19937 random(7);
    for (int i = 0; i < 2000; i++) {
        std::string text(random() % 40, ' ');
        for (char& c : text) c = static_cast<char>(random() % 255 + 1);
        for (const int mode : {SHAPE_ARABIC, SHAPE_DEVANAGARI}) {
            const std::string shaped = shapeText(text.c_str(), static_cast<uint8_t>(mode));
            EXPECT_LE(shaped.size(), text.size() * 3);
            EXPECT_EQ(shaped.empty(), text.empty());
        }
    }
}

TEST(ShapeBytes, LongTextsTakeTimeByTheirLength) {
    std::string marks = "\u0644";
    for (int i = 0; i < 200000; i++) marks += i % 2 ? "\u064E" : "\u0644";
    EXPECT_GT(arabic(marks).size(), marks.size());
    EXPECT_EQ(arabic(std::string(1000000, ' ')), std::string(1000000, ' '));
    std::string signs;
    for (int i = 0; i < 200000; i++) signs += "\u0915\u093F";
    EXPECT_EQ(hindi(signs).size(), signs.size());
}

// --- Arabic: joining. Expected forms are in visual order, from the left.

TEST(ShapeArabic, ALetterTakesItsFormFromItsNeighbours) {
    EXPECT_EQ(arabic("\u0628"), "\uFE8F");                         // beh alone
    EXPECT_EQ(arabic("\u0628\u0628\u0628"), "\uFE90\uFE92\uFE91"); // initial, medial, final
    EXPECT_EQ(arabic("\u0628 \u0628"), "\uFE8F \uFE8F");           // a blank parts
    EXPECT_EQ(arabic("\u062F\u0628"), "\uFE8F\uFEA9");             // dal joins nothing after it
    EXPECT_EQ(arabic("\u0628\u062F\u0628"), "\uFE8F\uFEAA\uFE91"); // dal is final
}

TEST(ShapeArabic, AHamzaJoinsNothing) {
    EXPECT_EQ(arabic("\u0621\u0628\u0628"), "\uFE90\uFE91\uFE80"); // the beh after it is initial
    EXPECT_EQ(arabic("\u0628\u0621"), "\uFE80\uFE8F");             // the beh before it is isolated
    EXPECT_EQ(arabic("\u0628\u0628\u0621"), "\uFE80\uFE90\uFE91"); // and final where it was joined
}

TEST(ShapeArabic, JoiningLooksThroughMarks) {
    EXPECT_EQ(arabic("\u0628\u064E\u0628"), "\uFE90\u064E\uFE91");
    EXPECT_EQ(arabic("\u0628\u0670\u065F\u0628"), "\uFE90\u065F\u0670\uFE91");
    EXPECT_EQ(arabic("\u0628\u064B\u0628"), "\uFE90\u064B\uFE91"); // the first mark
    EXPECT_EQ(arabic("\u0628\u065F\u0628"), "\uFE90\u065F\uFE91"); // and the last
    EXPECT_EQ(arabic("\u0628\u0660\u0628"), "\uFE8F\u0660\uFE8F"); // beside it a digit, which parts
    EXPECT_EQ(arabic("\u0628\u064E"), "\u064E\uFE8F");
    EXPECT_EQ(arabic("\u0628\u0640\u0628"), "\uFE8F\u0640\uFE8F"); // a letter outside the table does part
}

TEST(ShapeArabic, LamAndAlefAreOneLetter) {
    const struct {
        const char *alef, *isolated, *final;
    } rows[] = {{"\u0622", "\uFEF5", "\uFEF6"},
                {"\u0623", "\uFEF7", "\uFEF8"},
                {"\u0625", "\uFEF9", "\uFEFA"},
                {"\u0627", "\uFEFB", "\uFEFC"}};
    for (const auto& row : rows) {
        EXPECT_EQ(arabic(std::string("\u0644") + row.alef), row.isolated);
        EXPECT_EQ(arabic(std::string("\u0628\u0644") + row.alef), std::string(row.final) + "\uFE91");
        EXPECT_EQ(arabic(std::string("\u0644") + row.alef + "\u0628"), std::string("\uFE8F") + row.isolated);
    }
}

TEST(ShapeArabic, AMarkKeepsLamAndAlefApart) {
    EXPECT_EQ(arabic("\u0644\u064E\u0627"), "\uFE8E\u064E\uFEDF"); // lam initial, alef final
    EXPECT_EQ(arabic("\u0644\u0644\u0627"), "\uFEFC\uFEDF");       // the first of two lams is but a lam
    EXPECT_EQ(arabic("\u0644\u0671"), "\u0671\uFEDD");             // another alef
}

// --- Arabic: direction

TEST(ShapeArabic, LatinTextStaysAsItIs) {
    for (const char* text : {"Text", "A text, with 12 words.", "(F5)", "a (b) <c>", "été 5", "1280 x 720"})
        EXPECT_EQ(arabic(text), text);
}

// A sign after "ab" stays behind it when it runs from the left, and comes before it when from the right. A
// neutral one has "ab" on one side alone, and stays too: it is told by a letter behind it, where it parts.
static int runsFrom(const std::string& sign) {
    const std::string before = arabic("ab" + sign);
    if (before == sign + "ab") return 'R';
    return arabic("ab" + sign + "\u062F") == "\uFEA9ab" + sign ? 'L' : 'N';
}

TEST(ShapeArabic, AScriptRunsFromItsSideUpToTheEdgesOfItsRange) {
    const struct {
        const char *outside, *first, *last, *beyond;
        int side;
    } ranges[] = {{"\u058F", "\u0590", "\u08FF", "\u0900", 'R'},
                  {"\uFB4F", "\uFB50", "\uFEFF", "\uFF00", 'R'},
                  {"\u00BF", "\u00C0", "\u024F", "\u0250", 'L'},
                  {"@", "A", "Z", "[", 'L'},
                  {"`", "a", "z", "{", 'L'},
                  {"/", "0", "9", ":", 'L'}};
    for (const auto& range : ranges) {
        EXPECT_EQ(runsFrom(range.outside), 'N') << range.outside;
        EXPECT_EQ(runsFrom(range.first), range.side) << range.first;
        EXPECT_EQ(runsFrom(range.last), range.side) << range.last;
        EXPECT_EQ(runsFrom(range.beyond), 'N') << range.beyond;
    }
    for (const char* mark : {"\u064B", "\u065F", "\u0670"}) EXPECT_EQ(runsFrom(mark), 'N') << mark;
    for (const char* digit : {"1", "2", "3", "4", "5", "6", "7", "8"})
        EXPECT_EQ(runsFrom(digit), 'L') << digit;
}

TEST(ShapeArabic, OnlyNeutralsRunFromTheRight) {
    EXPECT_EQ(arabic("   "), "   ");
    EXPECT_EQ(arabic(". !"), "! .");
    EXPECT_EQ(arabic("(<"), ">)");
    EXPECT_EQ(arabic(""), "");
}

TEST(ShapeArabic, RunsStandFromTheLastToTheFirst) {
    EXPECT_EQ(arabic("\u062F 12 \u0631"), "\uFEAD 12 \uFEA9");
    EXPECT_EQ(arabic("\u062F ab 12"), "ab 12 \uFEA9"); // a neutral between equal sides is of that side
    EXPECT_EQ(arabic("ab \u062F"), "\uFEA9 ab");       // one between unlike sides is right to left
}

TEST(ShapeArabic, NeutralsAtTheEndsFollowTheirOnlySide) {
    EXPECT_EQ(arabic("\u062F!"), "!\uFEA9");
    EXPECT_EQ(arabic("!\u062F"), "\uFEA9!");
    EXPECT_EQ(arabic("\u062F 12!"), "12! \uFEA9");
    EXPECT_EQ(arabic("-5 \u062F"), "\uFEA9 -5");
}

TEST(ShapeArabic, BracketsMirrorOnlyFromTheRight) {
    EXPECT_EQ(arabic("(\u062F)"), "(\uFEA9)");
    EXPECT_EQ(arabic("<\u062F>"), "<\uFEA9>");
    EXPECT_EQ(arabic("[\u062F]"), "]\uFEA9["); // no other sign does
    EXPECT_EQ(arabic("\u062F (ab)"),
              "ab)) \uFEA9"); // the opening one parts unlike sides, the closing one not
}

TEST(ShapeArabic, NumbersKeepTheOrderOfTheirDigits) {
    EXPECT_EQ(arabic("\u062F 1234 \u0631 56"), "56 \uFEAD 1234 \uFEA9");
}

// --- The text library

// Columns of a picture, as alpha from the top.
static std::vector<std::vector<uint32_t>> columnsOf(TTF_Font* font, const char* text) {
    std::vector<std::vector<uint32_t>> columns;
    SDL_Surface* picture = TTF_RenderUTF8_Blended(font, text, {255, 255, 255, 255});
    for (int x = 0; x < picture->w; x++) {
        columns.emplace_back();
        for (int y = 0; y < picture->h; y++) {
            const auto* row =
                static_cast<const uint8_t*>(picture->pixels) + static_cast<ptrdiff_t>(y) * picture->pitch;
            columns.back().push_back(reinterpret_cast<const uint32_t*>(row)[x] >> 24);
        }
    }
    SDL_FreeSurface(picture);
    return columns;
}

TEST(TextLibrary, NeitherOrdersNorJoinsWhatItIsGiven) {
    ASSERT_EQ(TTF_Init(), 0);
    TTF_Font* font = TTF_OpenFont("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 32);
    ASSERT_NE(font, nullptr);
    for (const auto& [left, right] : {std::pair("\uFE8F", "\uFE8D"), std::pair("\u0628", "\u0627")}) {
        auto both = columnsOf(font, left);
        const auto second = columnsOf(font, right);
        both.insert(both.end(), second.begin(), second.end());
        EXPECT_TRUE(columnsOf(font, (std::string(left) + right).c_str()) == both) << left;
    }
    TTF_CloseFont(font);
    TTF_Quit();
}

// --- Devanagari

TEST(ShapeDevanagari, TheSignIStandsBeforeItsConsonant) {
    EXPECT_EQ(hindi("\u0915\u093F"), "\u093F\u0915");
    EXPECT_EQ(hindi("\u0939\u093F"), "\u093F\u0939");
    EXPECT_EQ(hindi("\u0926\u093F\u0928"), "\u093F\u0926\u0928"); // दिन
}

TEST(ShapeDevanagari, TheSignIStandsBeforeAConsonantWithNukta) {
    EXPECT_EQ(hindi("\u0921\u093C\u093F"), "\u093F\u0921\u093C");
}

TEST(ShapeDevanagari, TheSignIStandsBeforeTheLastConsonantOfACluster) {
    EXPECT_EQ(hindi("\u0938\u094D\u0925\u093F"), "\u0938\u094D\u093F\u0925"); // स्थि
}

TEST(ShapeDevanagari, TheSignIStaysWhereNoConsonantIsBefore) {
    EXPECT_EQ(hindi("\u093F"), "\u093F");
    EXPECT_EQ(hindi("\u0905\u093F"), "\u0905\u093F");
    EXPECT_EQ(hindi("a\u093F"), "a\u093F");
    EXPECT_EQ(hindi("\u093C\u093F"), "\u093C\u093F");   // a nukta of nothing
    EXPECT_EQ(hindi("a\u093C\u093F"), "a\u093C\u093F"); // of no consonant
    EXPECT_EQ(hindi("\u0914\u093F"), "\u0914\u093F");   // just outside the consonants
    EXPECT_EQ(hindi("\u093A\u093F"), "\u093A\u093F");
}

TEST(ShapeDevanagari, NothingElseMoves) {
    EXPECT_EQ(hindi("नमस्ते Orlavane 12%"), "नमस्ते Orlavane 12%");
    EXPECT_EQ(hindi("\u0915\u093F\u093F"), "\u093F\u093F\u0915"); // the consonant is last both times
}
