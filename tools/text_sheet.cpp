// text-sheet FILE.bmp LANGUAGE [SCALE]: draws the texts of a language through the game's own fonts and
// widgets. With a scale (0.75 to 2) the buttons of the screens in their real sizes and the cards of the
// tutorial, else every row of the string table with its number.
//   SDL_VIDEODRIVER=offscreen build/release/bin/text-sheet rows.bmp ar
//   SDL_VIDEODRIVER=offscreen build/release/bin/text-sheet buttons.bmp ar 0.75
#include "sheet_window.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

constexpr UiColor BACKGROUND = {0.20f, 0.24f, 0.22f, 1.0f};

// --- Rows

static void drawRows(Ui& ui) {
    constexpr int COLUMNS = 3;
    constexpr int ROWS = (STRING_COUNT + COLUMNS - 1) / COLUMNS;
    const float columnWidth = static_cast<float>(ui.screenW) / COLUMNS;
    const float rowHeight = static_cast<float>(ui.screenH) / ROWS;
    for (int id = 0; id < STRING_COUNT; id++) {
        const int column = id / ROWS;
        const float x = static_cast<float>(column) * columnWidth + 8.0f;
        const float y = static_cast<float>(id % ROWS) * rowHeight;
        uiText(ui, x, y + 4.0f, std::to_string(id).c_str(), 12, colMuted);
        const int size = uiFitFontSize(ui, tr(id), 18, columnWidth - 52.0f);
        uiText(ui, x + 36.0f, y, tr(id), size, colText);
    }
}

// --- Buttons

struct ButtonGroup {
    float width, height; // in units of the scale
    float size;
    bool bold;
    std::vector<int> labels;
};

static std::vector<ButtonGroup> buttonGroups() {
    return {
        {320, 48, 22, true, {STR_NEW_CITY}},
        {320, 48, 22, false, {STR_CONTINUE, STR_TUTORIAL, STR_SETTINGS, STR_QUIT}},
        {250, 42, 19, false, {STR_FULLSCREEN, STR_WINDOWED, STR_QUALITY_LOW, STR_QUALITY_MEDIUM}},
        {250, 42, 19, false, {STR_QUALITY_HIGH, STR_ON, STR_OFF, STR_BACK}},
        {280, 44, 19, true, {STR_RESUME}},
        {280, 44, 19, false, {STR_SAVE_GAME, STR_LOAD_GAME, STR_QUIT_TO_TITLE}},
        {280, 46, 20, false, {STR_KEEP_BUILDING, STR_NEW_CITY, STR_MAIN_MENU}},
        {216, 34, 16, true, {115, 116, 117, 118}},
        {216, 34, 16, true, {119, 120, 121}},
        {216, 34, 16, false, {96, 97, 98, 99}},
        {216, 34, 16, false, {100, 101, 102, 103}},
        {216, 34, 16, false, {104, 105, 106, 107}},
        {216, 34, 16, false, {108, 109, 110, 111}},
        {216, 34, 16, false, {112, 114, 152}},
        {150, 36, 16, false, {STR_ON, STR_OFF}},
        {140, 38, 18, false, {STR_TUTORIAL_NEXT, STR_TUTORIAL_SKIP, STR_TUTORIAL_FINISH}},
        {84, 30, 17, false, {STR_MENU}},
    };
}

static float drawButtons(Ui& ui, float s) {
    float y = 10.0f * s;
    for (const ButtonGroup& group : buttonGroups()) {
        float x = 10.0f * s;
        for (const int label : group.labels) {
            uiButton(ui, 1, {x, y, group.width * s, group.height * s}, tr(label), true, false,
                     static_cast<int>(group.size * s), group.bold);
            x += (group.width + 8.0f) * s;
        }
        y += (group.height + 8.0f) * s;
    }
    return y;
}

static void drawCards(Ui& ui, float s, float y) {
    constexpr int FIRST = STR_TUTORIAL + 1;
    constexpr float WIDTH = 440.0f;
    for (int i = 0; i < 7; i++) {
        const float x = (10.0f + static_cast<float>(i % 3) * (WIDTH + 10.0f)) * s;
        const int row = i / 3;
        const UiRect card = {x, y + static_cast<float>(row) * 104.0f * s, WIDTH * s, 96.0f * s};
        uiRect(ui, card, colPanel);
        uiWrappedText(ui, card, tr(FIRST + i), static_cast<int>(18.0f * s), colText, s);
    }
}

// --- The program

static std::vector<uint8_t> readSheet(int width, int height) {
    const size_t stride = static_cast<size_t>(width) * 3;
    std::vector<uint8_t> rows(stride * static_cast<size_t>(height));
    gl.PixelStorei(GL_PACK_ALIGNMENT, 1);
    gl.ReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, rows.data());
    for (int top = 0, bottom = height - 1; top < bottom; top++, bottom--)
        std::swap_ranges(rows.begin() + static_cast<ptrdiff_t>(stride * static_cast<size_t>(top)),
                         rows.begin() + static_cast<ptrdiff_t>(stride * static_cast<size_t>(top + 1)),
                         rows.begin() + static_cast<ptrdiff_t>(stride * static_cast<size_t>(bottom)));
    return rows;
}

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: text-sheet FILE.bmp LANGUAGE [SCALE]\n");
        return 1;
    }
    const bool buttons = argc >= 4;
    const float s = buttons ? std::clamp(static_cast<float>(std::atof(argv[3])), 0.75f, 2.0f) : 1.0f;
    const int width = buttons ? static_cast<int>(1360.0f * s) : 1920;
    const int height = buttons ? static_cast<int>(1180.0f * s) : 2300;

    FontSystem fonts;
    Ui ui;
    std::string log;
    if (!openSheetWindow("text-sheet", width, height) || !fontsInit(fonts, &log) ||
        !uiInit(ui, fonts, &log)) {
        std::fprintf(stderr, "text-sheet: no picture: %s %s\n", SDL_GetError(), log.c_str());
        return 1;
    }
    setCurrentLanguage(languageFromCode(argv[2]));
    fontsSetLanguage(fonts, currentLanguage());

    gl.Viewport(0, 0, width, height);
    uiBeginFrame(ui, width, height, {});
    uiRect(ui, {0.0f, 0.0f, static_cast<float>(width), static_cast<float>(height)}, BACKGROUND);
    if (buttons)
        drawCards(ui, s, drawButtons(ui, s));
    else
        drawRows(ui);
    uiFlush(ui);

    if (!saveSheet(readSheet(width, height), width, height, argv[1])) {
        std::fprintf(stderr, "text-sheet: %s: %s\n", argv[1], SDL_GetError());
        return 1;
    }
    uiDestroy(ui);
    fontsShutdown(fonts);
    SDL_Quit();
    return 0;
}
