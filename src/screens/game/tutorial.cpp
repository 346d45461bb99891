#include "screens/game/tutorial.h"

#include "app/app.h"
#include "app/hud_layout.h"
#include "app/tools.h"
#include "ui/layer/ui_shapes.h"
#include "ui/layer/ui_text.h"
#include "ui/layer/ui_widgets.h"
#include "ui/words/strings.h"

#include <algorithm>
#include <cassert>
#include <cmath>

constexpr uint32_t NEXT_ID = 460;
constexpr uint32_t SKIP_ID = 461;
constexpr int LAST_STEP = 6;
static_assert(STR_TUTORIAL_1 + LAST_STEP == STR_TUTORIAL_7);
constexpr UiColor colDim = {0.0f, 0.0f, 0.0f, 0.55f};

// Where the card stands beside its target.
enum CardPlace {
    CARD_RIGHT,
    CARD_BELOW,
    CARD_ABOVE
};

// What the step points at. False for a step without a target.
static bool stepTarget(const HudLayout& hud, int step, UiRect& target) {
    switch (step) {
    case 1:
        target = categoryButton(hud, CATEGORY_ROADS);
        return true;
    case 2:
        target = categoryButton(hud, CATEGORY_ZONES);
        return true;
    case 3:
        target = categoryButton(hud, CATEGORY_UTILITIES);
        return true;
    case 4:
        target = hud.topBar;
        return true;
    case 5:
        target = hud.missionBlock;
        return true;
    default:
        return false;
    }
}

static CardPlace cardPlace(const HudLayout& hud, UiRect target) {
    if (target.y < 60.0f * hud.scale) return CARD_BELOW;
    return target.y <= hud.height / 2.0f ? CARD_RIGHT : CARD_ABOVE;
}

static UiRect cardBesideTarget(const HudLayout& hud, UiRect target, CardPlace place, float width,
                               float height) {
    const float s = hud.scale;
    UiRect card = {0.0f, 0.0f, width, height};
    switch (place) {
    case CARD_BELOW:
        card.x = (hud.width - width) / 2.0f;
        card.y = target.y + target.h + 70.0f * s;
        break;
    case CARD_RIGHT:
        card.x = target.x + target.w + 70.0f * s;
        card.y = std::max(target.y + target.h / 2.0f - height / 2.0f, 70.0f * s);
        card.y = std::min(card.y, hud.height - height - 120.0f * s);
        break;
    case CARD_ABOVE:
        card.x = target.x + 20.0f * s;
        card.y = target.y - height - 70.0f * s;
        break;
    }
    // In a window too narrow for both margins the left one wins, because reading begins there.
    card.x = std::max(std::min(card.x, hud.width - width - 20.0f * s), 10.0f * s);
    return card;
}

// The window but for a framed hole.
static void dimAround(Ui& ui, const HudLayout& hud, UiRect target) {
    const float margin = 6.0f * hud.scale;
    const UiRect hole = {target.x - margin, target.y - margin, target.w + 2.0f * margin,
                         target.h + 2.0f * margin};
    const float right = hole.x + hole.w;
    const float bottom = hole.y + hole.h;
    uiRect(ui, {0.0f, 0.0f, hud.width, hole.y}, colDim);
    uiRect(ui, {0.0f, bottom, hud.width, hud.height - bottom}, colDim);
    uiRect(ui, {0.0f, hole.y, hole.x, hole.h}, colDim);
    uiRect(ui, {right, hole.y, hud.width - right, hole.h}, colDim);
    uiFrame(ui, hole, 2.5f * hud.scale, colGold);
}

static void drawArrow(Ui& ui, const HudLayout& hud, UiRect card, UiRect target, CardPlace place) {
    const float s = hud.scale;
    const float gap = 6.0f * s;
    float startX = card.x + card.w / 2.0f;
    float startY = place == CARD_ABOVE ? card.y + card.h : card.y;
    float tipX = target.x + target.w / 2.0f;
    float tipY = place == CARD_ABOVE ? target.y - gap : target.y + target.h + gap;
    if (place == CARD_RIGHT) {
        startX = card.x;
        startY = card.y + card.h / 2.0f;
        tipX = target.x + target.w + gap;
        tipY = target.y + target.h / 2.0f;
    }
    const float length = std::hypot(tipX - startX, tipY - startY);
    if (length <= 1.0f) return;

    const float ux = (tipX - startX) / length;
    const float uy = (tipY - startY) / length;
    const float baseX = tipX - 18.0f * s * ux;
    const float baseY = tipY - 18.0f * s * uy;
    const float nx = -uy * 9.0f * s;
    const float ny = ux * 9.0f * s;
    uiLine(ui, startX, startY, baseX, baseY, 4.0f * s, colGold);
    uiTriangle(ui, tipX, tipY, baseX + nx, baseY + ny, baseX - nx, baseY - ny, colGold);
}

static void endTour(App& app) {
    app.settings.tutorialDone = true;
    app.tutorialStep = -1;
    app.tutorialCard = {};
    saveSettings(app.settings, app.settingsPath);
}

static void drawCard(App& app, UiRect card, float s) {
    Ui& ui = app.ui;
    const int step = app.tutorialStep;
    assert(step >= 0 && step <= LAST_STEP);
    const bool last = step == LAST_STEP;
    const int textSize = uiFontSize(ui, 18.0f);
    app.tutorialCard = card;
    uiPanel(ui, card, 12.0f * s, 2.0f * s);
    uiText(ui, card.x + 20.0f * s, card.y + 16.0f * s, tr(STR_TUTORIAL), uiFontSize(ui, 15.0f), colGold,
           ALIGN_LEFT, true);
    uiWrappedText(ui, {card.x + 20.0f * s, card.y + 44.0f * s, card.w - 40.0f * s, 96.0f * s},
                  tr(STR_TUTORIAL_1 + step), textSize, colText, s);

    const float width = 140.0f * s;
    const UiRect skip = {card.x + 20.0f * s, card.y + (210.0f - 52.0f) * s, width, 38.0f * s};
    const UiRect next = {card.x + card.w - 20.0f * s - width, skip.y, width, skip.h};
    if (uiButton(ui, SKIP_ID, skip, tr(STR_TUTORIAL_SKIP), !last, false, textSize)) endTour(app);
    if (uiButton(ui, NEXT_ID, next, tr(last ? STR_TUTORIAL_FINISH : STR_TUTORIAL_NEXT), true, true,
                 textSize)) {
        if (last)
            endTour(app);
        else
            app.tutorialStep++;
    }
}

void drawTutorial(App& app, const Input&) {
    if (app.tutorialStep < 0) return;
    if (app.tutorialStep > LAST_STEP) return endTour(app);
    Ui& ui = app.ui;
    const HudLayout hud = hudLayout(ui);
    const float s = hud.scale;
    const float width = std::min(480.0f * s, hud.width - 40.0f * s);
    const float height = 210.0f * s;
    UiRect card = {(hud.width - width) / 2.0f, (hud.height - height) / 2.0f, width, height};
    UiRect target;
    if (stepTarget(hud, app.tutorialStep, target)) {
        const CardPlace place = cardPlace(hud, target);
        card = cardBesideTarget(hud, target, place, width, height);
        dimAround(ui, hud, target);
        drawArrow(ui, hud, card, target, place);
    } else {
        uiDimWindow(ui, colDim.a);
    }
    drawCard(app, card, s);
}
