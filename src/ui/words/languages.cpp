#include "ui/words/languages.h"

#include <SDL.h>

#include <cassert>
#include <cstring>

static constexpr Language LANGUAGES[LANGUAGE_COUNT] = {
    {"en", "English", 0},    {"pl", "Polski", 0},   {"pt", "Português", 0}, {"es", "Español", 0},
    {"de", "Deutsch", 0},    {"fr", "Français", 0}, {"it", "Italiano", 0},  {"ru", "Русский", 0},
    {"uk", "Українська", 0}, {"tr", "Türkçe", 0},   {"zh", "中文", 0},      {"ja", "日本語", 0},
    {"ar", "العربية", 1},    {"hi", "हिन्दी", 0},
};

const Language& languageAt(int index) {
    assert(index >= 0 && index < LANGUAGE_COUNT);
    return LANGUAGES[index];
}

int languageFromCode(const char* text) {
    if (!text) return 0;
    for (int index = 0; index < LANGUAGE_COUNT; index++) {
        const size_t length = std::strlen(LANGUAGES[index].code);
        if (SDL_strncasecmp(text, LANGUAGES[index].code, length) != 0) continue;
        const char next = text[length];
        if (next == '\0' || next == '-' || next == '_') return index;
    }
    return 0;
}

static int& languageInUse() {
    static int language = 0;
    return language;
}

int currentLanguage() { return languageInUse(); }

void setCurrentLanguage(int index) { languageInUse() = index >= 0 && index < LANGUAGE_COUNT ? index : 0; }

int preferredLanguage() {
    SDL_Locale* locales = SDL_GetPreferredLocales();
    if (!locales) return 0;
    const int language = languageFromCode(locales[0].language);
    SDL_free(locales);
    return language;
}
