// The fonts of the game for tests, in the language that they choose.
#pragma once

#include "ui/text/fonts.h"
#include "ui/words/languages.h"
#include "view/gl/fake_gl.h"

#include <gtest/gtest.h>

struct SpokenFonts : testing::Test {
    FakeGl fake;
    FontSystem fonts;

    void SetUp() override { ASSERT_TRUE(fontsInit(fonts, nullptr)); }
    void TearDown() override {
        fontsShutdown(fonts);
        setCurrentLanguage(0);
    }
    void speak(int language) {
        setCurrentLanguage(language);
        fontsSetLanguage(fonts, language);
    }
};
