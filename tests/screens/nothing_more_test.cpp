// What a screen draws is looked for in the tests of each; here, that it draws and does nothing else.
#include "screens/screen_states.h"
#include "sim/city_helpers.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <tuple>

static const ScreenState& stateNamed(const std::string& name) {
    for (const ScreenState& state : screenStates())
        if (name == state.name) return state;
    throw std::invalid_argument(name);
}

TEST(NothingMore, IsDrawnThanTheStateAsksFor) {
    for (const ScreenState& state : screenStates())
        EXPECT_EQ(countsOf(GameInState(state).callsAt(1280, 720)), state.counts) << state.name;
}

TEST(NothingMore, NoTwoButtonsOfAScreenShareANumberAndNoneHasZero) {
    for (const ScreenState& state : screenStates()) {
        std::set<uint32_t> ids = {0};
        for (const DrawnCall& call : GameInState(state).callsAt(1280, 720))
            if (call.kind == "button") {
                EXPECT_TRUE(ids.insert(call.buttonId).second) << state.name << ": " << call.words;
            }
    }
}

TEST(NothingMore, EveryButtonHasTheNumberOfItsPlace) {
    const struct {
        std::string state;
        std::vector<uint32_t> numbers;
    } rows[] = {
        {"title", {100, 101, 104, 102, 103}},
        {"options", {200, 201, 202, 203, 204, 205, 206, 207, 208}},
        {"top bar", {300, 304, 303, 302, 301, 308, 307, 306, 305}},
        {"statistics", {309}},
        {"district", {320, 321, 322, 323}},
        {"tools: roads", {330, 331, 332, 333, 334, 335, 336, 341, 342, 343}},
        {"tools: zones", {330, 331, 332, 333, 334, 335, 336, 344, 345, 346, 347}},
        {"tools: services", {330, 331, 332, 333, 334, 335, 336, 348, 349, 350, 351, 352, 353}},
        {"tools: utilities", {330, 331, 332, 333, 334, 335, 336, 354, 355, 356, 357}},
        {"tools: districts",
         {330, 331, 332, 333, 334, 335, 336, 358, 359, 370, 371, 372, 373, 374, 375, 376, 377}},
        {"budget", {309, 380, 381, 382, 383, 384, 385, 386, 387, 390, 391, 392, 393,
                    394, 395, 396, 397, 398, 399, 400, 401, 402, 403, 404, 405}},
        {"pause", {420, 421, 422, 423, 424}},
        {"end of a metropolis", {430, 431, 432}},
        {"launcher", {450, 451, 452, 453, 454}},
        {"launcher without files", {455, 456}},
        {"removal", {457, 458}},
        {"tour: welcome", {461, 460}},
    };
    for (const auto& row : rows) {
        std::vector<uint32_t> numbers;
        for (const DrawnCall& call : GameInState(stateNamed(row.state)).callsAt(1280, 720))
            if (call.kind == "button") numbers.push_back(call.buttonId);
        EXPECT_EQ(numbers, row.numbers) << row.state;
    }
}

// Where and how far a text may run, which no text of today does to the last pixel.
TEST(NothingMore, IsWrittenOutsideOfTheRoomOfAText) {
    const struct {
        std::string state;
        std::vector<float> room; // the box of a paragraph and the gap of its lines, or the width of a line
        int fontSize;
    } rows[] = {
        {"bottom bar", {360}, 17},
        {"bottom bar", {360}, 13},
        {"shops", {232}, 20},
        {"road", {232}, 20},
        {"launcher with news and a save", {360, 268, 560, 60, 1}, 18},
        {"launcher without files", {356, 116, 568, 40, 1}, 14},
        {"deletion", {356, 250, 568, 150, 1}, 22},
        {"removal", {356, 250, 568, 150, 1}, 22},
        {"status line", {390, 644, 566, 68, 1}, 17},
        {"city", {988, 536, 268, 80, 1}, 15},
        {"district", {988, 106, 268, 80, 1}, 15},
        {"tour: welcome", {420, 299, 440, 96, 1}, 18},
    };
    for (const auto& row : rows) {
        auto calls = GameInState(stateNamed(row.state)).callsAt(1280, 720);
        std::erase_if(calls, [&](const DrawnCall& call) {
            return call.kind != (row.room.size() == 1 ? "fitting" : "paragraph") ||
                   call.fontSize != row.fontSize;
        });
        ASSERT_EQ(calls.size(), 1u) << row.state;
        EXPECT_THAT(calls[0].lengths, testing::Pointwise(testing::FloatNear(0.01f), row.room)) << row.state;
    }
}

// All that a click could change.
static auto choices(const App& app) {
    return std::tuple(app.screen, app.returnScreen, app.launcherPage, app.paused, app.tutorialStep,
                      app.currentTool, app.currentCategory, app.currentOverlay, app.currentPanel,
                      app.paintDistrict, app.speed, app.selectedBuilding, app.selectedCellX,
                      app.selectedCellY, app.statusId, app.updateState, app.gameFiles.size(), app.saveExists,
                      app.quitRequested, app.displayDirty, cityHash(app.city));
}

static bool isSilent(const App& app) {
    return std::none_of(app.audio.voices.begin(), app.audio.voices.end(),
                        [](const Voice& voice) { return voice.active; });
}

TEST(NothingMore, HappensInAFrameWithoutAClick) {
    for (const ScreenState& state : screenStates()) {
        SCOPED_TRACE(state.name);
        GameInState game(state);
        const auto before = choices(game.app);
        takeOpenedFolders();
        for (int frame = 0; frame < 2; frame++) game.callsAt(1280, 720);
        EXPECT_TRUE(choices(game.app) == before);
        EXPECT_EQ(takeOpenedFolders(), 0);
        EXPECT_TRUE(isSilent(game.app));
        EXPECT_TRUE(std::filesystem::is_empty(game.folder)); // neither settings nor a city are saved
    }
}
