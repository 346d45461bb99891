// The room that each text has at its place, in every language and with its longest figures. Lengths are those
// of a window 720 high.
#include "ui/text/spoken_fonts.h"
#include "ui/text/text_layout.h"
#include "ui/words/format_text.h"
#include "ui/words/hud_text.h"
#include "ui/words/strings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Texts on one line.
struct Line {
    std::vector<std::string> texts;
    float room; // for all of them together
};

struct Paragraph {
    std::string text;
    float size, width, height;
    float gap; // pixels
};

// Of the smallest and the largest windows, and of those that are common: 600, 720, 900 and 1080 high.
constexpr float SCALES[] = {0.75f, 600.0f / 720.0f, 1.0f, 1.25f, 1.5f, 2.0f};
constexpr float COLUMN = 268.0f; // of the right panel

struct TextRoom : SpokenFonts {
    template<typename Check> void inEveryLanguageAndScale(Check check) {
        for (int language = 0; language < LANGUAGE_COUNT; language++) {
            speak(language);
            for (const float scale : SCALES) {
                SCOPED_TRACE(languageAt(language).code + std::string(" at ") + std::to_string(scale));
                check(scale);
            }
        }
    }

    void expectRoom(const std::vector<Line>& lines, float size, float scale, bool bold = false) {
        const int pixels = static_cast<int>(size * scale);
        for (const Line& line : lines) {
            int width = 0;
            for (const std::string& text : line.texts)
                width += fontsMeasure(fonts, text.c_str(), pixels, bold);
            EXPECT_LE(static_cast<float>(width), line.room * scale) << testing::PrintToString(line.texts);
        }
    }

    const std::vector<std::string>& wrapped(const Paragraph& paragraph, float scale) {
        return fontsWrapText(fonts, paragraph.text.c_str(), static_cast<int>(paragraph.size * scale),
                             paragraph.width * scale, 100);
    }

    void expectWhole(const std::vector<Paragraph>& paragraphs, float scale) {
        for (const Paragraph& paragraph : paragraphs) {
            const int pixels = static_cast<int>(paragraph.size * scale);
            const float gap = 2.0f * paragraph.gap;
            const float step = static_cast<float>(fontsLineSkip(fonts, pixels, false)) + gap;
            const auto count = static_cast<float>(wrapped(paragraph, scale).size());
            EXPECT_LE(count * step - gap, paragraph.height * scale + 0.5f) << paragraph.text;
        }
    }
};

template<typename... Values> static std::string filled(int id, Values... values) {
    char text[512];
    return formatTextInto(text, sizeof text, tr(id), values...);
}

static std::vector<Line> plainLines(const std::vector<int>& ids, float room) {
    std::vector<Line> lines;
    for (const int id : ids) lines.push_back({{tr(id)}, room});
    return lines;
}

// A caption at the left and a value at the right, with a gap that keeps them apart.
static Line row(int caption, const std::string& value) { return {{tr(caption), value}, COLUMN - 8.0f}; }

TEST_F(TextRoom, ARowOfThePanelsHoldsItsCaptionAndItsValue) {
    inEveryLanguageAndScale([&](float scale) {
        std::vector<Line> rows = {row(STR_MONEY, "-1234567890"), row(STR_STREETS_AND_AVENUES, "1234 / 1234"),
                                  row(STR_DISTRICT, tr(STR_NONE)),
                                  row(STR_STATUS, filled(STR_CONSTRUCTION_PERCENT, 99))};
        for (const int id :
             {STR_INCOME_PER_DAY, STR_EXPENSES_PER_DAY, STR_BALANCE_PER_DAY, STR_CITIZENS, STR_JOBS,
              STR_WORKERS, STR_UNEMPLOYED, STR_EDUCATED, STR_HAPPINESS, STR_POLLUTION, STR_TRAFFIC,
              STR_BUS_STOPS, STR_TRANSIT_RIDERS, STR_COMMUTERS, STR_WORKING_BUILDINGS})
            rows.push_back(row(id, "-123456"));
        for (const int id : {STR_WORKING, STR_NO_ROAD_ACCESS, STR_NO_POWER, STR_NO_WATER})
            rows.push_back(row(STR_STATUS, tr(id)));
        expectRoom(rows, 15.0f, scale);
    });
}

TEST_F(TextRoom, ALineOfAnInspectorStaysInThePanel) {
    inEveryLanguageAndScale([&](float scale) {
        std::vector<Line> lines = {{{filled(STR_LEVEL_NUMBER, 3)}, COLUMN},
                                   {{filled(STR_RESIDENT_COUNT, 999)}, COLUMN},
                                   {{filled(STR_WORKERS_OF, 999, 999)}, COLUMN},
                                   {{filled(STR_DAYS_WITHOUT_SERVICE, 999)}, COLUMN},
                                   {{filled(STR_EFFICIENCY_PERCENT, 100)}, COLUMN}};
        for (const int id : {STR_POWER_STATE, STR_WATER_STATE, STR_BUS_STOP_STATE})
            for (const bool yes : {false, true}) lines.push_back({{filled(id, yesOrNo(yes))}, COLUMN});
        expectRoom(lines, 15.0f, scale);
    });
}

TEST_F(TextRoom, AMeterHoldsItsCaptionAndItsPercentage) {
    inEveryLanguageAndScale([&](float scale) {
        std::vector<Line> meters;
        for (const int id : {STR_HAPPINESS, STR_TRAFFIC, STR_POLLUTION, STR_POWER, STR_WATER, STR_LAND_VALUE,
                             STR_RESIDENTIAL, STR_COMMERCIAL, STR_OFFICES, STR_INDUSTRIAL})
            meters.push_back(row(id, "-100%"));
        expectRoom(meters, 14.0f, scale);
    });
}

TEST_F(TextRoom, ATitleOfThePanelStopsBeforeTheCross) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom(plainLines({STR_TAXES, STR_FINANCES, STR_STATISTICS, STR_CITY}, COLUMN - 36.0f), 20.0f,
                   scale, true);
        expectRoom({{{filled(STR_DISTRICT_NUMBER, 8)}, COLUMN - 36.0f}}, 20.0f, scale, true);
        expectRoom(plainLines({STR_SERVICE_BUDGETS}, COLUMN), 18.0f, scale, true);
    });
}

TEST_F(TextRoom, ABudgetNamesItsServiceBeforeItsRate) {
    inEveryLanguageAndScale([&](float scale) {
        std::vector<Line> rows;
        for (const int id :
             {STR_RESIDENTIAL, STR_COMMERCIAL, STR_OFFICES, STR_INDUSTRIAL, STR_POLICE, STR_FIRE, STR_HEALTH,
              STR_EDUCATION, STR_PARKS, STR_TRANSIT, STR_POWER, STR_WATER})
            rows.push_back({{tr(id), "200%"}, 194.0f - 6.0f});
        expectRoom(rows, 16.0f, scale);
    });
}

TEST_F(TextRoom, APolicyStopsBeforeItsButton) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom(plainLines({STR_TAX, STR_SMOKE_FREE, STR_NO_TRUCKS, STR_TRANSIT_FIRST}, 118.0f - 5.0f),
                   16.0f, scale);
    });
}

TEST_F(TextRoom, TheKeyOfTheChartStaysInThePanel) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom({{{tr(STR_INCOME)}, 98.0f},
                    {{tr(STR_EXPENSES)}, COLUMN - 136.0f},
                    {{filled(STR_LAST_DAYS, 60)}, COLUMN},
                    {{filled(STR_CELL_COORDINATES, 95, 95)}, COLUMN}},
                   14.0f, scale);
    });
}

TEST_F(TextRoom, TheMissionEndsBeforeTheStatusLineBegins) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom({{{filled(STR_MISSION_OF, 6, 6)}, 360.0f}, {{filled(STR_PROGRESS_PERCENT, 100)}, 112.0f}},
                   12.0f, scale);
        expectRoom(plainLines({STR_NO_MISSION_LEFT}, 372.0f), 17.0f, scale, true);
    });
}

// --- Paragraphs

// In the narrowest window that is common, four wide and three high.
static std::vector<Paragraph> statusMessages(float scale) {
    constexpr float WIDTH = 960.0f - (306.0f + 372.0f + 36.0f);
    std::vector<Paragraph> messages;
    StatusBuffer buffer;
    for (int status = 1; status <= 35; status++) {
        const bool namesABuilding = status == 21 || status == 28;
        for (uint32_t kind = 0; kind < (namesABuilding ? 14u : 1u); kind++) {
            const uint32_t argument = namesABuilding ? kind : 15000u;
            messages.push_back({statusText(status, argument, buffer), 17.0f, WIDTH, 68.0f, scale});
        }
    }
    return messages;
}

static std::vector<Paragraph> panelHints(float scale) {
    return {{tr(STR_DISTRICT_HINT), 15.0f, COLUMN, 80.0f, scale},
            {tr(STR_INSPECTOR_HINT), 15.0f, COLUMN, 80.0f, scale}};
}

static std::vector<Paragraph> tutorialSteps(float scale) {
    std::vector<Paragraph> steps;
    for (int id = STR_TUTORIAL_1; id <= STR_TUTORIAL_7; id++)
        steps.push_back({tr(id), 18.0f, 440.0f, 96.0f, scale});
    return steps;
}

static std::vector<Paragraph> launcherTexts() {
    std::vector<Paragraph> texts = {{tr(STR_DELETE_QUESTION), 22.0f, 568.0f, 150.0f, 1.0f},
                                    {tr(STR_UNINSTALL_QUESTION), 22.0f, 568.0f, 150.0f, 1.0f}};
    for (int id = STR_UPDATE_CHECKING_TEXT; id <= STR_UPDATE_FAILED_TEXT; id++) {
        const std::string text = id == STR_UPDATE_NEWER_TEXT ? filled(id, "12.34.56") : tr(id);
        texts.push_back({text, 18.0f, 560.0f, 60.0f, 1.0f});
    }
    return texts;
}

TEST_F(TextRoom, EveryMessageIsShownWhole) {
    inEveryLanguageAndScale([&](float scale) { expectWhole(statusMessages(scale), scale); });
}

TEST_F(TextRoom, AHintOfThePanelIsShownWhole) {
    inEveryLanguageAndScale([&](float scale) { expectWhole(panelHints(scale), scale); });
}

TEST_F(TextRoom, AStepOfTheTutorialIsShownWholeOnItsCard) {
    inEveryLanguageAndScale([&](float scale) { expectWhole(tutorialSteps(scale), scale); });
}

TEST_F(TextRoom, TheLauncherShowsItsParagraphsWhole) {
    inEveryLanguageAndScale([&](float scale) { expectWhole(launcherTexts(), scale); });
}

static bool beginsWithClosingSign(const std::string& line) {
    for (const char* sign : {"、", "。", "，", "．", "！", "？", "：", "；", "…",  "％",    "%",
                             "’",  "”",  "）", ")",  "」", "』", "】", "》", "〉", "\u3000"})
        if (line.starts_with(sign)) return true;
    return false;
}

// Chinese and Japanese lines break between any two characters, so only their words can keep a sign from
// standing alone in front.
TEST_F(TextRoom, NoLineOfChineseOrJapaneseBeginsWithAClosingSign) {
    for (const char* code : {"zh", "ja"}) {
        speak(languageFromCode(code));
        for (int windowHeight = 540; windowHeight <= 1440; windowHeight += 20) {
            const float scale = static_cast<float>(windowHeight) / 720.0f;
            for (const auto& paragraphs :
                 {statusMessages(scale), panelHints(scale), tutorialSteps(scale), launcherTexts()})
                for (const Paragraph& paragraph : paragraphs)
                    for (const std::string& line : wrapped(paragraph, scale))
                        EXPECT_FALSE(beginsWithClosingSign(line))
                            << line << " of " << paragraph.text << " at " << windowHeight;
        }
    }
}

// --- Screens

TEST_F(TextRoom, TheEndOfTheGameIsToldInsideItsPanel) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom(plainLines({STR_METROPOLIS_COMPLETE, STR_WENT_BANKRUPT}, 536.0f), 30.0f, scale, true);
        expectRoom(plainLines({STR_WON_TEXT, STR_LOST_TEXT}, 536.0f), 17.0f, scale);
        expectRoom({{{filled(STR_END_FIGURES, 1234, 12345, 12345, 100)}, 536.0f}}, 17.0f, scale);
    });
}

TEST_F(TextRoom, AnOptionStopsBeforeItsButton) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom(plainLines({STR_RESOLUTION, STR_DISPLAY, STR_GRAPHICS, STR_VSYNC, STR_SHOW_FPS,
                               STR_MUSIC_VOLUME, STR_EFFECTS_VOLUME, STR_LANGUAGE},
                              290.0f),
                   19.0f, scale);
        expectRoom(plainLines({STR_RESOLUTION_HINT, STR_LOW_HINT, STR_MEDIUM_HINT, STR_HIGH_HINT,
                               STR_VSYNC_HINT, STR_LANGUAGE_HINT},
                              290.0f),
                   14.0f, scale);
    });
}

TEST_F(TextRoom, TheMenusHoldTheirTitlesAndTheTitleScreenItsHints) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom(plainLines({STR_SETTINGS}, 616.0f), 34.0f, scale, true);
        expectRoom(plainLines({STR_GAME_FILES}, 636.0f), 34.0f, scale, true);
        expectRoom(plainLines({STR_PAUSED}, 356.0f), 32.0f, scale, true);
        expectRoom(plainLines({STR_KEY_HINT}, 940.0f), 15.0f, scale);
        expectRoom({{{filled(STR_UPDATE_AVAILABLE, "12.34.56")}, 940.0f}}, 18.0f, scale, true);
    });
}

TEST_F(TextRoom, TheLauncherShowsItsLinesWhole) {
    inEveryLanguageAndScale([&](float scale) {
        expectRoom({{{filled(STR_VERSION_NAME, "12.34.56")}, 636.0f}, {{tr(STR_NO_GAME_FILES)}, 636.0f}},
                   18.0f, scale);
        expectRoom(
            {{{filled(STR_SAVED_GAME_SIZE, "31.12.2026 23:59")}, 636.0f}, {{tr(STR_NO_SAVED_GAME)}, 636.0f}},
            16.0f, scale);
    });
}
