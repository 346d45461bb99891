// Every length of the screens is counted at a window 720 high: at another height it is the same picture, in
// another size.
#include "screens/screen_states.h"

// The largest and the smallest scale, and two between them. Also in a window in which cards and bars are held
// to their edges.
constexpr float SCALES[] = {0.75f, 1.25f, 2.0f};
constexpr float WIDTHS[] = {1280.0f, 960.0f, 480.0f};
constexpr float LEGEND_Y = 720.0f - 84.0f + 35.0f;

static bool same(UiColor a, UiColor b) { return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a; }

// What does not grow: the pieces of the legend's bar overlap by a pixel.
static float plainPart(const DrawnCall& usual, size_t i) {
    return usual.kind == "rect" && usual.lengths[1] == LEGEND_Y && i == 2 ? 1.0f : 0.0f;
}

static void expectScaled(const DrawnCall& usual, const DrawnCall& other, float scale) {
    ASSERT_EQ(other.kind, usual.kind);
    EXPECT_EQ(other.words, usual.words);
    EXPECT_TRUE(same(other.color, usual.color));
    ASSERT_EQ(other.lengths.size(), usual.lengths.size());
    for (size_t i = 0; i < usual.lengths.size(); i++) {
        const float plain = plainPart(usual, i);
        EXPECT_NEAR(other.lengths[i] - plain, scale * (usual.lengths[i] - plain), 0.01f)
            << usual.kind << " " << usual.words << ", length " << i;
    }
    // Cut down to whole pixels.
    EXPECT_EQ(other.fontSize, static_cast<int>(static_cast<float>(usual.fontSize) * scale)) << usual.words;
}

TEST(Scale, EveryScreenGrowsWithTheWindow) {
    for (const ScreenState& state : screenStates())
        for (const float width : WIDTHS) {
            const auto usual = GameInState(state).callsAt(static_cast<int>(width), 720);
            for (const float scale : SCALES) {
                SCOPED_TRACE(std::string(state.name) + ", " + std::to_string(width) + " by " +
                             std::to_string(scale));
                const auto other = GameInState(state).callsAt(static_cast<int>(width * scale),
                                                              static_cast<int>(720.0f * scale));
                ASSERT_EQ(countsOf(other), countsOf(usual));
                for (size_t i = 0; i < usual.size(); i++) expectScaled(usual[i], other[i], scale);
            }
        }
}

// Lower than 540 and higher than 1440 pixels.
TEST(Scale, BeyondItsEndsTextsAndButtonsKeepTheirSize) {
    for (const auto& [height, last] : {std::pair(539, 540), {300, 540}, {1, 540}, {1441, 1440}, {4320, 1440}})
        for (const ScreenState& state : screenStates()) {
            SCOPED_TRACE(std::string(state.name) + " " + std::to_string(height));
            const auto beyond = GameInState(state).callsAt(2560, height);
            const auto end = GameInState(state).callsAt(2560, last);
            ASSERT_EQ(beyond.size(), end.size());
            for (size_t i = 0; i < end.size(); i++) {
                EXPECT_EQ(beyond[i].fontSize, end[i].fontSize) << end[i].words;
                if (end[i].kind != "button") continue;
                EXPECT_NEAR(beyond[i].lengths[2], end[i].lengths[2], 0.01f) << end[i].words;
                EXPECT_NEAR(beyond[i].lengths[3], end[i].lengths[3], 0.01f) << end[i].words;
            }
        }
}
