#include "ui/layer/ui_helpers.h"

#include <gtest/gtest.h>

static std::string keyOf(const FontSystem& fonts, uint32_t texture) {
    for (const auto& [key, run] : fonts.runCache)
        if (run.texture == texture) return key;
    return "";
}

std::vector<DrawnText> drawnTexts(const Ui& ui) {
    std::vector<DrawnText> texts;
    for (const UiDrawCommand& command : ui.commands) {
        const std::string key = keyOf(*ui.fonts, command.texture);
        if (key.empty()) continue;
        for (uint32_t i = 0; i < command.count; i += 6) {
            const UiVertex& topLeft = ui.vertices[command.first + i];
            const UiVertex& bottomRight = ui.vertices[command.first + i + 2];
            texts.push_back(
                {key, topLeft.x, topLeft.y, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y});
        }
    }
    return texts;
}

std::string textOf(const DrawnText& drawn) {
    const size_t second = drawn.key.find('|', drawn.key.find('|') + 1);
    return drawn.key.substr(second + 1);
}

void expectWholeBatch(const Ui& ui) {
    uint32_t next = 0;
    for (const UiDrawCommand& command : ui.commands) {
        EXPECT_EQ(command.first, next);
        next += command.count;
    }
    EXPECT_EQ(next, ui.vertices.size());
}

Input mouseAt(float x, float y) {
    Input input;
    input.mouseX = x;
    input.mouseY = y;
    return input;
}

Input pressAt(float x, float y) {
    Input input = holdAt(x, y);
    input.leftPressed = 1;
    return input;
}

Input holdAt(float x, float y) {
    Input input = mouseAt(x, y);
    input.leftHeld = 1;
    return input;
}

Input releaseAt(float x, float y) {
    Input input = mouseAt(x, y);
    input.leftReleased = 1;
    return input;
}
