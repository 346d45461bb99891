// Between look-at-setup and what it brings into the set-up program.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

constexpr const wchar_t* MEASURE_MESSAGE = L"Orlavane.measure";
constexpr const wchar_t* REPORT_NAME = L"Orlavane.measured";
constexpr size_t REPORT_SIZE = 65536;

inline std::wstring wide(const std::string& text) {
    std::wstring letters(text.size(), L'\0');
    const auto size = static_cast<int>(text.size());
    letters.resize(
        static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, letters.data(), size)));
    return letters;
}
