// The only door to the operating system besides SDL: platform_linux.cpp and platform_windows.cpp stand behind
// it.
#pragma once

// File name of the game's executable in the program's folder.
extern const char* const EXECUTABLE_NAME;
