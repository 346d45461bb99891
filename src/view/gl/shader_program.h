// From shader text to a linked program.
#pragma once

#include <cstdint>
#include <string>

// The GL name of the shader, or 0; then the driver's message (at most 1024 bytes) is appended to `log`, which
// may be null.
uint32_t compileShader(uint32_t type, const char* text, std::string* log);

// Replaces the program in the slot, which is 0 after a failure: the old program is gone either way.
bool linkProgram(uint32_t& programSlot, const char* vertexText, const char* fragmentText, std::string* log);
void deleteProgram(uint32_t& programSlot);
