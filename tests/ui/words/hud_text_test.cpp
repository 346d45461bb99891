#include "ui/words/hud_text.h"

#include "ui/words/strings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

static std::string status(int id, uint32_t argument = 0) {
    StatusBuffer buffer;
    return statusText(static_cast<uint8_t>(id), argument, buffer);
}

TEST(StatusText, PlainMessages) {
    struct {
        int id;
        int row;
    } const rows[] = {{1, 57},  {2, 58},  {3, 59},  {4, 60},  {5, 61},  {6, 62},  {8, 63},
                      {11, 71}, {12, 70}, {13, 64}, {14, 65}, {15, 66}, {16, 67}, {17, 69},
                      {18, 80}, {19, 72}, {20, 68}, {22, 75}, {23, 76}, {24, 77}, {26, 79},
                      {27, 81}, {29, 82}, {30, 83}, {32, 85}, {33, 89}, {34, 90}, {35, 91}};
    for (const auto& [id, row] : rows) EXPECT_EQ(status(id, 7), tr(row)) << id;
}

TEST(StatusText, MessagesWithANumber) {
    EXPECT_EQ(status(7, 12), "Zoned 12 cells.");
    EXPECT_EQ(status(9, 3), "Painted 3 cells.");
    EXPECT_EQ(status(10, 41), "Cleared 41 cells.");
    EXPECT_EQ(status(25, 8), "Painted district 8.");
    EXPECT_EQ(status(31, 15000), "Mission complete! +15000");
}

TEST(StatusText, MessagesWithABuilding) {
    EXPECT_EQ(status(21, 5), "Construction started: Fire station.");
    EXPECT_EQ(status(28, 0), "Homes is finished.");
    EXPECT_EQ(status(28, 14), " is finished.");
    EXPECT_EQ(status(21, 0xFFFFFFFFu), "Construction started: .");
}

TEST(StatusText, NumbersThatAreNoStatusSayNothing) {
    for (const int id : {0, 36, 100, 255}) EXPECT_EQ(status(id, 1), "") << id;
}

TEST(StatusText, AFormattedTextHas255BytesAtMost) {
    static_assert(sizeof(StatusBuffer) == 256);
    for (int language = 0; language < LANGUAGE_COUNT; language++) {
        setCurrentLanguage(language);
        for (int id = 0; id < 256; id++) {
            StatusBuffer buffer;
            buffer.fill('#');
            const char* text = statusText(static_cast<uint8_t>(id), 0xFFFFFFFFu, buffer);
            EXPECT_LT(text == buffer.data() ? strnlen(text, buffer.size()) : 0, buffer.size()) << id;
        }
    }
    setCurrentLanguage(0);
}

TEST(BuildingName, FourteenKindsHaveOne) {
    EXPECT_STREQ(buildingName(0), "Homes");
    EXPECT_STREQ(buildingName(4), "Police station");
    EXPECT_STREQ(buildingName(13), "Water pump");
    for (const int kind : {-1, 14, 255, -2147483647}) EXPECT_STREQ(buildingName(kind), "") << kind;
}

TEST(OverlayName, SixOverlays) {
    constexpr const char* NAMES[] = {"Normal", "Traffic", "Power", "Water", "Pollution", "Happiness"};
    for (int overlay = 0; overlay < 6; overlay++) EXPECT_STREQ(overlayName(overlay), NAMES[overlay]);
}
