#include "ui/words/hud_text.h"

#include "sim/city.h"
#include "ui/words/format_text.h"
#include "ui/words/strings.h"
#include "view/world/world_meshes.h"

#include <cassert>

enum StatusArgument {
    NOTHING,
    NUMBER,
    KIND
};

struct StatusRow {
    StringId text;
    StatusArgument argument = NOTHING;
};

// By StatusId.
static constexpr StatusRow STATUS_ROWS[] = {
    {STRING_COUNT}, // no status
    {STR_WELCOME},
    {STR_GAME_LOADED},
    {STR_NO_ROAD_HERE},
    {STR_NO_MONEY_FOR_ROAD},
    {STR_UPGRADED_TO_AVENUE},
    {STR_ROAD_BUILT},
    {STR_ZONED_CELLS, NUMBER},
    {STR_ROCK_NOT_ZONED},
    {STR_PAINTED_CELLS, NUMBER},
    {STR_CLEARED_CELLS, NUMBER},
    {STR_NO_MONEY},
    {STR_OUTSIDE_MAP},
    {STR_NOTHING_ON_WATER},
    {STR_TOO_STEEP},
    {STR_ALREADY_BUILT},
    {STR_ROAD_IS_HERE},
    {STR_BUS_STOP_NEEDS_ROAD},
    {STR_BUS_STOP_BUILT},
    {STR_NOTHING_TO_REMOVE},
    {STR_CLEAR_ZONING_FIRST},
    {STR_CONSTRUCTION_STARTED, KIND},
    {STR_DEMOLISHED},
    {STR_ROAD_REMOVED},
    {STR_ZONE_REMOVED},
    {STR_PAINTED_DISTRICT, NUMBER},
    {STR_DISTRICT_CLEARED},
    {STR_BUS_STOP_REMOVED},
    {STR_BUILDING_FINISHED, KIND},
    {STR_BUILDING_ABANDONED},
    {STR_CITY_BANKRUPT},
    {STR_MISSION_COMPLETE, NUMBER},
    {STR_ALL_MISSIONS_COMPLETE},
    {STR_GAME_SAVED},
    {STR_SAVE_FAILED},
    {STR_NO_SAVE_TO_LOAD},
};
static_assert(std::size(STATUS_ROWS) == STATUS_NO_SAVED_GAME + 1);

const char* statusText(uint8_t statusId, uint32_t statusArg, StatusBuffer& buffer) {
    if (statusId == 0 || statusId >= std::size(STATUS_ROWS)) return "";
    const StatusRow& row = STATUS_ROWS[statusId];
    const char* text = tr(row.text);
    const int argument = static_cast<int>(statusArg);
    switch (row.argument) {
    case NUMBER:
        return formatTextInto(buffer.data(), buffer.size(), text, argument);
    case KIND:
        return formatTextInto(buffer.data(), buffer.size(), text, buildingName(argument));
    default:
        return text;
    }
}

const char* buildingName(int kind) { return kind >= 0 && kind < KIND_COUNT ? tr(STR_HOMES + kind) : ""; }

// The rows of the overlays follow that of the bulldozer.
const char* overlayName(int overlay) {
    assert(overlay >= 0 && overlay < OVERLAY_COUNT);
    return tr(overlay == OVERLAY_NORMAL ? STR_NORMAL : STR_BULLDOZE + overlay);
}

const char* yesOrNo(bool yes) { return tr(yes ? STR_YES : STR_NO); }
