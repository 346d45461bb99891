// Variables of the environment, as the program sees them on every system.
#pragma once

#include <cstdlib>
#include <string>

inline std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// On Windows an empty value unsets it.
inline void setVariable(const char* name, const std::string& value) {
#ifdef _WIN32
    _putenv_s(name, value.c_str());
#else
    setenv(name, value.c_str(), 1);
#endif
}

inline void unsetVariable(const char* name) {
#ifdef _WIN32
    _putenv_s(name, "");
#else
    unsetenv(name);
#endif
}
