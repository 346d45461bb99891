#include "screens/menus/settings_screen.h"

#include "app/app.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/format_text.h"
#include "ui/words/languages.h"
#include "ui/words/strings.h"

#include <cassert>

enum OptionRow {
    ROW_RESOLUTION,
    ROW_DISPLAY,
    ROW_GRAPHICS,
    ROW_VSYNC,
    ROW_SHOW_FPS,
    ROW_MUSIC,
    ROW_EFFECTS,
    ROW_LANGUAGE,
    ROW_COUNT
};

constexpr uint32_t FIRST_ROW_ID = 200;
constexpr uint32_t BACK_ID = 208;

static constexpr StringId CAPTIONS[ROW_COUNT] = {
    STR_RESOLUTION, STR_DISPLAY,      STR_GRAPHICS,       STR_VSYNC,
    STR_SHOW_FPS,   STR_MUSIC_VOLUME, STR_EFFECTS_VOLUME, STR_LANGUAGE,
};

// A hand-edited file may hold a quality below the table; it counts as medium, as it does for the shadows.
static int qualityIndex(const Settings& settings) {
    assert(settings.quality <= 2); // which loading sees to
    return settings.quality < 0 ? 1 : settings.quality;
}

// While no language was chosen, the one found at the start.
static int languageIndex(const Settings& settings) {
    return settings.language < 0 ? currentLanguage() : settings.language;
}

// The second line of a row, null for none.
static const char* hintText(const Settings& settings, int row) {
    switch (row) {
    case ROW_RESOLUTION:
        return tr(STR_RESOLUTION_HINT);
    case ROW_GRAPHICS:
        return tr(STR_LOW_HINT + qualityIndex(settings));
    case ROW_VSYNC:
        return tr(STR_VSYNC_HINT);
    case ROW_LANGUAGE:
        return tr(STR_LANGUAGE_HINT);
    default:
        return nullptr;
    }
}

struct ValueText {
    char text[32];
};

static const char* onOrOff(bool on) { return tr(on ? STR_ON : STR_OFF); }

// What the row's button shows; `buffer` holds the texts that are made up here.
static const char* valueText(const Settings& settings, int row, ValueText& buffer) {
    int width;
    int height;
    switch (row) {
    case ROW_RESOLUTION:
        resolutionSize(settings, width, height);
        return formatTextInto(buffer.text, sizeof buffer.text, "%d x %d", width, height);
    case ROW_DISPLAY:
        return tr(settings.fullscreen ? STR_FULLSCREEN : STR_WINDOWED);
    case ROW_GRAPHICS:
        return tr(STR_QUALITY_LOW + qualityIndex(settings));
    case ROW_VSYNC:
        return onOrOff(settings.vsync);
    case ROW_SHOW_FPS:
        return onOrOff(settings.showFps);
    case ROW_MUSIC:
        return formatTextInto(buffer.text, sizeof buffer.text, "%d%%", settings.musicVolume);
    case ROW_EFFECTS:
        return formatTextInto(buffer.text, sizeof buffer.text, "%d%%", settings.sfxVolume);
    default:
        return languageAt(languageIndex(settings)).nativeName;
    }
}

// Of three choices; a value from a hand-edited file comes back among them.
static int nextOfThree(int value) {
    const int next = (value + 1) % 3;
    return next < 0 ? next + 3 : next;
}

// A volume off the steps of 25 stays off them, and may pass 100 once before it starts again.
static int nextVolume(int percent) { return percent < 100 ? percent + 25 : 0; }

static void clickRow(App& app, int row) {
    Settings& settings = app.settings;
    switch (row) {
    case ROW_RESOLUTION:
        settings.resolution = nextOfThree(settings.resolution);
        break;
    case ROW_DISPLAY:
        settings.fullscreen = !settings.fullscreen;
        break;
    case ROW_GRAPHICS:
        settings.quality = nextOfThree(settings.quality);
        break;
    case ROW_VSYNC:
        settings.vsync = !settings.vsync;
        break;
    case ROW_SHOW_FPS:
        settings.showFps = !settings.showFps;
        break;
    case ROW_MUSIC:
        settings.musicVolume = nextVolume(settings.musicVolume);
        applyVolumes(app);
        break;
    case ROW_EFFECTS:
        settings.sfxVolume = nextVolume(settings.sfxVolume);
        applyVolumes(app);
        break;
    default:
        chooseLanguage(app, (languageIndex(settings) + 1) % LANGUAGE_COUNT);
    }
}

static void drawRows(App& app, UiRect panel, int font) {
    Ui& ui = app.ui;
    const float s = uiScale(ui);
    int clickedRow = -1;
    for (int row = 0; row < ROW_COUNT; row++) {
        const float y = panel.y + (84.0f + 50.0f * static_cast<float>(row)) * s;
        uiSettingRow(ui, panel.x + 36.0f * s, y, tr(CAPTIONS[row]), hintText(app.settings, row), font);
        const UiRect button = {panel.x + (620.0f - 250.0f - 36.0f) * s, y, 250.0f * s, 42.0f * s};
        ValueText buffer;
        const uint32_t id = FIRST_ROW_ID + static_cast<uint32_t>(row);
        if (!uiButton(ui, id, button, valueText(app.settings, row, buffer), true, false, font)) continue;
        clickRow(app, row);
        clickedRow = row;
    }
    if (clickedRow < 0) return;

    saveSettings(app.settings, app.settingsPath);
    if (clickedRow == ROW_RESOLUTION || clickedRow == ROW_DISPLAY || clickedRow == ROW_VSYNC)
        app.displayDirty = true;
}

void drawOptionsScreen(App& app, const Input&) {
    Ui& ui = app.ui;
    const float s = uiScale(ui);
    const float width = static_cast<float>(ui.screenW);
    const float height = static_cast<float>(ui.screenH);
    const float cx = width / 2.0f;
    uiGradientRect(ui, {0.0f, 0.0f, width, height}, {0.0f, 0.0f, 0.0f, 0.35f}, {0.0f, 0.0f, 0.0f, 0.75f});

    const UiRect panel = {cx - 310.0f * s, (height - 610.0f * s) / 2.0f, 620.0f * s, 610.0f * s};
    uiPanel(ui, panel, 12.0f * s, 2.0f * s);
    uiText(ui, cx, panel.y + 22.0f * s, tr(STR_SETTINGS), uiFontSize(ui, 34.0f), colGold, ALIGN_CENTER, true);

    const int font = uiFontSize(ui, 19.0f);
    drawRows(app, panel, font);
    const UiRect back = {cx - 100.0f * s, panel.y + (610.0f - 62.0f) * s, 200.0f * s, 46.0f * s};
    if (uiButton(ui, BACK_ID, back, tr(STR_BACK), true, true, font)) app.screen = app.returnScreen;
}
