#include "ui/text/font_gate.h"

#include <SDL.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

static FontGate* gate = nullptr;

FontGate::FontGate() {
    EXPECT_EQ(gate, nullptr);
    gate = this;
}

FontGate::~FontGate() { gate = nullptr; }

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the linker's
extern "C" {
int __real_TTF_Init();
TTF_Font* __real_TTF_OpenFont(const char* path, int size);
void __real_TTF_CloseFont(TTF_Font* font);
int __real_TTF_SizeUTF8(TTF_Font* font, const char* text, int* width, int* height);
SDL_Surface* __real_TTF_RenderUTF8_Blended(TTF_Font* font, const char* text, SDL_Color color);

int __wrap_TTF_Init();
TTF_Font* __wrap_TTF_OpenFont(const char* path, int size);
void __wrap_TTF_CloseFont(TTF_Font* font);
int __wrap_TTF_SizeUTF8(TTF_Font* font, const char* text, int* width, int* height);
SDL_Surface* __wrap_TTF_RenderUTF8_Blended(TTF_Font* font, const char* text, SDL_Color color);

int __wrap_TTF_Init() {
    if (gate && gate->initFails) return SDL_SetError("the gate is shut");
    return __real_TTF_Init();
}

TTF_Font* __wrap_TTF_OpenFont(const char* path, int size) {
    if (!gate) return __real_TTF_OpenFont(path, size);
    gate->opened++;
    gate->tried.emplace_back(path);
    if (gate->refusesAll || std::count(gate->refused.begin(), gate->refused.end(), path) > 0) return nullptr;
    const auto other = gate->instead.find(path);
    return __real_TTF_OpenFont(other == gate->instead.end() ? path : other->second.c_str(), size);
}

void __wrap_TTF_CloseFont(TTF_Font* font) {
    if (gate) gate->closed++;
    __real_TTF_CloseFont(font);
}

int __wrap_TTF_SizeUTF8(TTF_Font* font, const char* text, int* width, int* height) {
    if (gate) {
        gate->measured++;
        gate->measuredBytes += std::strlen(text);
    }
    return __real_TTF_SizeUTF8(font, text, width, height);
}

SDL_Surface* __wrap_TTF_RenderUTF8_Blended(TTF_Font* font, const char* text, SDL_Color color) {
    if (gate) gate->rendered++;
    if (gate && gate->rendersNothing) return nullptr;
    return __real_TTF_RenderUTF8_Blended(font, text, color);
}
}
// NOLINTEND(bugprone-reserved-identifier)
