// make-setup-words FORM: writes the words of the set-up program, in all languages, as the set-up program of a
// system reads them:
//   nsis  a LangString for each text and language, "%s" and its like as the variable $WordArgument
#include "ui/languages.h"
#include "ui/strings.h"

#include <cstddef>
#include <cstdio>
#include <string>

struct Word {
    int id;
    const char* name;
};

// The set-up program's own rows, and the button "Back", which one of them quotes.
static constexpr Word WORDS[] = {
    {STR_BACK, "BACK"},
    {STR_SETUP_TITLE, "TITLE"},
    {STR_SETUP_WELCOME, "WELCOME"},
    {STR_SETUP_INTRODUCTION, "INTRODUCTION"},
    {STR_SETUP_START_HINT, "START_HINT"},
    {STR_SETUP_LICENSE_TITLE, "LICENSE_TITLE"},
    {STR_SETUP_LICENSE_LANGUAGE, "LICENSE_LANGUAGE"},
    {STR_SETUP_CHOOSE_LOCATION, "CHOOSE_LOCATION"},
    {STR_SETUP_INSTALL_INTO, "INSTALL_INTO"},
    {STR_SETUP_CHANGE_LOCATION, "CHANGE_LOCATION"},
    {STR_SETUP_SPACE_NEEDED, "SPACE_NEEDED"},
    {STR_SETUP_INSTALL, "INSTALL"},
    {STR_SETUP_COPYING_FILES, "COPYING_FILES"},
    {STR_SETUP_CREATING_SHORTCUTS, "CREATING_SHORTCUTS"},
    {STR_SETUP_FINISHING, "FINISHING"},
    {STR_SETUP_INSTALLED, "INSTALLED"},
    {STR_SETUP_COPIED_TO, "COPIED_TO"},
    {STR_SETUP_FAILED, "FAILED"},
    {STR_SETUP_NEXT, "NEXT"},
    {STR_SETUP_CANCEL, "CANCEL"},
    {STR_SETUP_FINISH, "FINISH"},
    {STR_SETUP_STEP_WELCOME, "STEP_WELCOME"},
    {STR_SETUP_STEP_LICENSE, "STEP_LICENSE"},
    {STR_SETUP_STEP_LOCATION, "STEP_LOCATION"},
    {STR_SETUP_STEP_INSTALL, "STEP_INSTALL"},
    {STR_SETUP_DESKTOP_SHORTCUT, "DESKTOP_SHORTCUT"},
    {STR_SETUP_START_MENU, "START_MENU"},
    {STR_SETUP_START_GAME, "START_GAME"},
    {STR_SETUP_DISK_FULL, "DISK_FULL"},
    {STR_SETUP_NO_FOLDER, "NO_FOLDER"},
    {STR_SETUP_NOT_WRITTEN, "NOT_WRITTEN"},
    {STR_SETUP_FILES_MISSING, "FILES_MISSING"},
    {STR_SETUP_NAME, "NAME"},
    {STR_SETUP_ALLOW_TERMS, "ALLOW_TERMS"},
    {STR_SETUP_DONE, "DONE"},
    {STR_SETUP_STEP_COPYING, "COPYING"},
    {STR_SETUP_WAITING, "WAITING"},
    {STR_SETUP_KEEP_TOGETHER, "KEEP_TOGETHER"},
    {STR_SETUP_CLOSE_GAME, "CLOSE_GAME"},
};

static const char* textOf(const Word& word, int language) {
    return textOfRow(stringTable + static_cast<ptrdiff_t>(word.id) * LANGUAGE_COUNT, language);
}

// --- nsis

// As its language files are called.
static constexpr const char* NSIS_LANGUAGES[LANGUAGE_COUNT] = {
    "English", "Polish",    "PortugueseBR", "Spanish",     "German",   "French", "Italian",
    "Russian", "Ukrainian", "Turkish",      "SimpChinese", "Japanese", "Arabic", "Hindi",
};

// In double quotes. A placeholder, "%" up to its letter, becomes the variable.
static std::string quotedForNsis(const char* text) {
    std::string quoted = "\"";
    for (; *text; text++) {
        if (*text == '%') {
            while (*text != 's' && *text != 'f') text++;
            quoted += "$WordArgument";
        } else if (*text == '$') {
            quoted += "$$";
        } else if (*text == '"') {
            quoted += "$\\\"";
        } else {
            quoted += *text;
        }
    }
    return quoted + '"';
}

// Each language is announced by a macro of the script's, with its number in the game's settings.
static void writeForNsis() {
    std::printf("Var WordArgument\n");
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        const char* name = NSIS_LANGUAGES[language];
        std::printf("\n!insertmacro SETUP_LANGUAGE %d %s\n", language, name);
        for (const Word& word : WORDS)
            std::printf("LangString %s ${LANG_%s} %s\n", word.name, name,
                        quotedForNsis(textOf(word, language)).c_str());
    }
}

// --- Forms

struct Form {
    const char* name;
    void (*write)();
};

static constexpr Form FORMS[] = {
    {"nsis", writeForNsis},
};

int main(int argc, char** argv) {
    for (const Form& form : FORMS)
        if (argc == 2 && std::string(argv[1]) == form.name) {
            form.write();
            return std::fflush(stdout) == 0 ? 0 : 1;
        }
    std::fprintf(stderr, "usage: make-setup-words FORM\nforms:");
    for (const Form& form : FORMS) std::fprintf(stderr, " %s", form.name);
    std::fprintf(stderr, "\n");
    return 2;
}
