// The launcher, on which the program opens: the version and its updates, the game's files, the save, the
// removal, and the way to the title screen. It stands over the slowly turning land.
#pragma once

struct App;
struct Input;

void drawLauncher(App& app, const Input& input);
