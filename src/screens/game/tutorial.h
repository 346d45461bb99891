// The guided tour: seven cards that point at the parts of the screen and move on by their own buttons.
#pragma once

struct App;
struct Input;

// Nothing while the tour does not run.
void drawTutorial(App& app, const Input& input);
