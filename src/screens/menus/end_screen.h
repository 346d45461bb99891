// The card at the end of a game, over the game screen: all missions done, or bankrupt.
#pragma once

struct App;
struct Input;

void drawEndScreen(App& app, const Input& input);
