// The panel on the right, which always shows one view: an open panel, what is selected, or the city.
#pragma once

struct App;
struct Building;
struct Input;

void drawRightPanel(App& app, const Input& input);

// Null when none is selected, and for a number that no longer means a building.
const Building* selectedBuilding(const App& app);
