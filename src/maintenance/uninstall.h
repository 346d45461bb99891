// The game removes itself. A program cannot delete the folder that it runs from: a small script in the
// temporary folder outlives the game, removes folder and shortcuts, and then itself.
#pragma once

#include <string>

// Whether the last part of the path is exactly the name of the game's folder. Any of `separators` parts
// folders.
bool isGameFolder(const std::string& path, const char* separators);

// With "\" for each "/", and none at the end.
std::string normalizeWindowsPath(const std::string& path);

// What the script removes. A shortcut may be empty: then there is nothing to remove.
struct Removal {
    std::string folder; // without a separator at its end
    std::string desktopLink;
    std::string menuLink;
};

// The text of the script for the command interpreters of either system. Any path is safe in it.
std::string windowsRemovalScript(const Removal& removal);
std::string shellRemovalScript(const Removal& removal);

// In place of an earlier one. False leaves none behind.
bool writeScript(const std::string& path, const std::string& text);
