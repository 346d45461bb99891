// Texts and the 2-D layer on the processor.
#include "silent_gl.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/strings.h"

#include <benchmark/benchmark.h>

constexpr uint32_t WHITE = 0xFFFFFFFF;
constexpr int LANGUAGES[] = {0, 10, 12, 13}; // English, Chinese, Arabic, Hindi

// The 2-D layer of a window 720 pixels high, with the fonts of a language.
struct BenchScreen {
    FontSystem fonts;
    Ui ui;

    explicit BenchScreen(int language = 0) {
        openGraphics();
        setCurrentLanguage(language);
        fontsInit(fonts, nullptr);
        fontsSetLanguage(fonts, language);
        uiInit(ui, fonts, nullptr);
        begin();
    }
    ~BenchScreen() {
        uiDestroy(ui);
        fontsShutdown(fonts);
    }
    BenchScreen(const BenchScreen&) = delete;
    BenchScreen& operator=(const BenchScreen&) = delete;

    void begin() { uiBeginFrame(ui, 1280, 720, {}); }
};

static void languages(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("language");
    for (const int language : LANGUAGES) benchmark->Arg(language);
}

// --- Runs

static void cachedRun(benchmark::State& state) {
    BenchScreen screen(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(fontsRenderRun(screen.fonts, tr(STR_DEMAND), 16, WHITE, false));
}
BENCHMARK(cachedRun)->Apply(languages);

static void missedRun(benchmark::State& state) {
    BenchScreen screen(static_cast<int>(state.range(0)));
    uint32_t color = 0; // each is a run of its own
    for (auto _ : state)
        benchmark::DoNotOptimize(
            fontsRenderRun(screen.fonts, tr(STR_DEMAND), 16, color++ << 8 | 0xFF, false));
}
BENCHMARK(missedRun)->Apply(languages)->Unit(benchmark::kMicrosecond);

// --- Measures

static void knownWidth(benchmark::State& state) {
    BenchScreen screen;
    for (auto _ : state) benchmark::DoNotOptimize(uiTextWidth(screen.ui, tr(STR_DEMAND), 16));
}
BENCHMARK(knownWidth);

static void newWidth(benchmark::State& state) {
    BenchScreen screen(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(fontsMeasureAnew(screen.fonts, tr(STR_DEMAND), 16, false));
}
BENCHMARK(newWidth)->Apply(languages)->Unit(benchmark::kMicrosecond);

constexpr float NARROW = 60.0f; // the label has to be lowered to the floor

static void knownFit(benchmark::State& state) {
    BenchScreen screen;
    for (auto _ : state) benchmark::DoNotOptimize(uiFitFontSize(screen.ui, tr(STR_NEW_CITY), 22, NARROW));
}
BENCHMARK(knownFit);

static void newFit(benchmark::State& state) {
    BenchScreen screen;
    for (auto _ : state) {
        benchmark::DoNotOptimize(uiFitFontSize(screen.ui, tr(STR_NEW_CITY), 22, NARROW));
        screen.fonts.fittedSizes.clear();
    }
}
BENCHMARK(newFit)->Unit(benchmark::kMicrosecond);

// The longest text of the program, in seven lines.
static void drawParagraph(BenchScreen& screen) {
    screen.begin();
    uiWrappedText(screen.ui, {0.0f, 0.0f, 240.0f, 400.0f}, tr(STR_SETUP_INTRODUCTION), 15, colText, 1.0f);
}

static void knownParagraph(benchmark::State& state) {
    BenchScreen screen(static_cast<int>(state.range(0)));
    for (auto _ : state) drawParagraph(screen);
}
BENCHMARK(knownParagraph)->Apply(languages);

static void newParagraph(benchmark::State& state) {
    BenchScreen screen(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        drawParagraph(screen);
        screen.fonts.paragraphs.clear();
    }
}
BENCHMARK(newParagraph)->Apply(languages)->Unit(benchmark::kMicrosecond);

// --- Frames

static void flush(benchmark::State& state) {
    BenchScreen screen;
    while (screen.ui.vertices.size() < 5000) uiRect(screen.ui, {10.0f, 10.0f, 50.0f, 50.0f}, colPanel);
    for (auto _ : state) uiFlush(screen.ui);
}
BENCHMARK(flush);

static void button(benchmark::State& state) {
    BenchScreen screen;
    for (auto _ : state) {
        screen.ui.vertices.clear();
        screen.ui.commands.clear();
        uiButton(screen.ui, 100, {20.0f, 20.0f, 216.0f, 34.0f}, tr(STR_NEW_CITY), true, false, 16);
    }
}
BENCHMARK(button);

// More than any screen shows: 40 buttons, 60 labels, 12 bars and a paragraph.
static void fullFrame(benchmark::State& state) {
    BenchScreen screen(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        screen.begin();
        Ui& ui = screen.ui;
        for (uint32_t i = 0; i < 40; i++)
            uiButton(ui, 100 + i, {20.0f, 18.0f * static_cast<float>(i), 216.0f, 34.0f},
                     tr(STR_NEW_CITY + static_cast<int>(i)), true, i % 8 == 0, 16);
        for (int i = 0; i < 60; i++)
            uiText(ui, 300.0f, 10.0f * static_cast<float>(i), tr(80 + i), 15, colMuted);
        for (int i = 0; i < 12; i++)
            uiMeterRow(ui, 700.0f, 40.0f * static_cast<float>(i), 200.0f, tr(140 + i),
                       0.07f * static_cast<float>(i), colGood);
        uiWrappedText(ui, {1000.0f, 0.0f, 240.0f, 400.0f}, tr(STR_SETUP_INTRODUCTION), 15, colText, 1.0f);
        uiFlush(ui);
    }
    state.counters["vertices"] = static_cast<double>(screen.ui.vertices.size());
}
BENCHMARK(fullFrame)->Apply(languages)->Unit(benchmark::kMicrosecond);
