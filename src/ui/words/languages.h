// The languages of the game. The index is the language's number everywhere: settings, fonts, texts.
#pragma once

#include <cstdint>

constexpr int LANGUAGE_COUNT = 14;

struct Language {
    const char* code;
    const char* nativeName; // in the language's own script
    uint8_t rightToLeft;
};

// 0 to LANGUAGE_COUNT - 1.
const Language& languageAt(int index);

// From a locale name such as "de_AT": its language's index, or 0 (English) for a null text or another
// language.
int languageFromCode(const char* text);

// The language in which the game speaks; 0 until it is set. The one setting that every text needs, and so the
// one that no record carries.
int currentLanguage();
// An index that is no language's selects English.
void setCurrentLanguage(int index);
// The language of the player's system, by its first preferred locale.
int preferredLanguage();
