#include "ui/words/languages.h"

#include "environment.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <string>

TEST(Languages, StandInTheirOrderWithCodeAndName) {
    const struct {
        const char *code, *name;
    } rows[] = {{"en", "English"},    {"pl", "Polski"},   {"pt", "Português"}, {"es", "Español"},
                {"de", "Deutsch"},    {"fr", "Français"}, {"it", "Italiano"},  {"ru", "Русский"},
                {"uk", "Українська"}, {"tr", "Türkçe"},   {"zh", "中文"},      {"ja", "日本語"},
                {"ar", "العربية"},    {"hi", "हिन्दी"}};
    static_assert(std::size(rows) == LANGUAGE_COUNT);
    for (int i = 0; i < LANGUAGE_COUNT; i++) {
        EXPECT_STREQ(languageAt(i).code, rows[i].code);
        EXPECT_STREQ(languageAt(i).nativeName, rows[i].name);
        EXPECT_EQ(languageAt(i).rightToLeft, i == 12) << i;
        EXPECT_EQ(languageFromCode(languageAt(i).code), i);
    }
}

// --- From a locale's name

TEST(LanguageFromCode, ARegionBehindAHyphenOrAnUnderscoreIsPassedOver) {
    for (const char* name : {"pt", "pt-BR", "pt_BR", "PT-br", "PT_PT", "Pt", "pt_BR.UTF-8", "pt-", "pt_"})
        EXPECT_EQ(languageFromCode(name), 2) << name;
}

TEST(LanguageFromCode, AThirdLetterIsAnotherLanguage) {
    for (const char* name : {"ptx", "pts_BR", "pl1", "dee", "arc", "hi.UTF-8", "de@euro"})
        EXPECT_EQ(languageFromCode(name), 0) << name;
}

TEST(LanguageFromCode, AnythingElseIsEnglish) {
    EXPECT_EQ(languageFromCode(nullptr), 0);
    for (const char* name : {"", "p", "C", "POSIX", "nl_NL", "-", "_de", " de", "\xff\xfe"})
        EXPECT_EQ(languageFromCode(name), 0) << name;
}

// --- The language in use

TEST(CurrentLanguage, IsTheOneThatWasSet) {
    for (const int index : {0, 5, 13}) {
        setCurrentLanguage(index);
        EXPECT_EQ(currentLanguage(), index);
    }
    setCurrentLanguage(0);
}

TEST(CurrentLanguage, OfNoLanguagesIndexIsEnglish) {
    for (const int index : {14, 15, 1000, -1, -2147483647 - 1}) {
        setCurrentLanguage(7);
        setCurrentLanguage(index);
        EXPECT_EQ(currentLanguage(), 0) << index;
    }
}

// --- The player's system

#ifdef __linux__ // where variables name it
struct PreferredLanguage : testing::Test {
    std::string lang, language; // as they were

    static void set(const char* name, const std::string& value) {
        if (value.empty())
            unsetVariable(name);
        else
            setVariable(name, value);
    }
    PreferredLanguage() : lang(variable("LANG")), language(variable("LANGUAGE")) {}
    ~PreferredLanguage() override { with(lang, language); }

    static int with(const std::string& lang, const std::string& language) {
        set("LANG", lang);
        set("LANGUAGE", language);
        return preferredLanguage();
    }
};

TEST_F(PreferredLanguage, IsThatOfTheFirstLocale) {
    EXPECT_EQ(with("de_AT.UTF-8", ""), 4);
    EXPECT_EQ(with("hi_IN", ""), 13);
    EXPECT_EQ(with("zh_CN.UTF-8", ""), 10);
    EXPECT_EQ(with("fr_FR.UTF-8", "de:it"), 5);
}

TEST_F(PreferredLanguage, IsEnglishWhenTheFirstIsOfNoLanguageOfOurs) {
    EXPECT_EQ(with("nl_NL.UTF-8", "de:fr"), 0); // though it has the second
    EXPECT_EQ(with("C", ""), 0);
    EXPECT_EQ(with("", "ja"), 11); // with no LANG the list begins with LANGUAGE
}

TEST_F(PreferredLanguage, IsEnglishWithoutAnyLocale) { EXPECT_EQ(with("", ""), 0); }
#endif
