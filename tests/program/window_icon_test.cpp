#include "program/window_icon.h"

#include "program/talking_sdl.h"
#include "ui/logo/logo.h"

#include <gtest/gtest.h>

TEST(WindowIcon, IsTheLogoWithItsClearCorners) {
    SDL_Surface* icon = makeWindowIcon();
    ASSERT_NE(icon, nullptr);
    ASSERT_EQ(icon->w, 64);
    ASSERT_EQ(icon->h, 64);
    std::vector<uint8_t> logo;
    paintLogo(64, logo);
    for (int y = 0; y < 64; y++)
        for (int x = 0; x < 64; x++) {
            const uint8_t* row = static_cast<const uint8_t*>(icon->pixels) + y * icon->pitch;
            uint32_t value = 0;
            SDL_memcpy(&value, row + x * 4, sizeof value);
            uint8_t colour[4];
            SDL_GetRGBA(value, icon->format, &colour[0], &colour[1], &colour[2], &colour[3]);
            ASSERT_EQ(SDL_memcmp(colour, logo.data() + (y * 64 + x) * 4, 4), 0) << x << ", " << y;
        }
    SDL_FreeSurface(icon);
}

TEST(WindowIcon, IsGivenToTheWindow) {
    talkingSdl().said.clear();
    setWindowIcon(nullptr);
    EXPECT_EQ(talkingSdl().said, "icon 64x64 without a window\n");
}
