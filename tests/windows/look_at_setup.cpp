// Looks at the set-up program's window and presses its buttons, as its standard input says:
//   look              writes a line for the title and for each control that is seen: number, whether it
//                     can be pressed, width and height that it has and that its words need, class, words;
//                     of a bar its length and how far it is
//   press NUMBER      presses a button or checks a box
//   write NUMBER TEXT sets the text of a control
//   fit NUMBER TEXT   measures that text in a control that shows another
// Each answer ends with an empty line. Without a window there is nothing but that.
#include "windows/measure_window.h"

#include <cwchar>
#include <iostream>
#include <sstream>
#include <string>

static BOOL CALLBACK isSetup(HWND window, LPARAM found) {
    if (!GetPropW(window, L"Orlavane.setup") || !IsWindowVisible(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

static HWND findSetup() {
    HWND found = nullptr;
    EnumWindows(isSetup, reinterpret_cast<LPARAM>(&found));
    return found;
}

struct Wanted {
    int number;
    HWND found;
};

// A button or a box. Texts of the window have the numbers of others on a page.
static BOOL CALLBACK isWanted(HWND control, LPARAM data) {
    auto& wanted = *reinterpret_cast<Wanted*>(data);
    wchar_t kind[64] = L"";
    GetClassNameW(control, kind, 64);
    const bool isText = std::wcscmp(kind, L"Static") == 0;
    if (GetDlgCtrlID(control) != wanted.number || isText || !IsWindowVisible(control)) return TRUE;
    wanted.found = control;
    return FALSE;
}

static HWND findControl(HWND window, int number) {
    Wanted wanted = {number, nullptr};
    EnumChildWindows(window, isWanted, reinterpret_cast<LPARAM>(&wanted));
    return wanted.found;
}

// Not by a click, for which the window would have to be in front.
static void press(HWND control, int number) {
    SendMessageW(control, BM_SETCHECK, BST_CHECKED, 0);
    PostMessageW(GetParent(control), WM_COMMAND, static_cast<WPARAM>(number),
                 reinterpret_cast<LPARAM>(control));
}

static void look(HWND window, int number, HMODULE library, const char* report) {
    HOOKPROC measure = nullptr;
    const FARPROC address = GetProcAddress(library, "measureWindow");
    static_assert(sizeof measure == sizeof address);
    __builtin_memcpy(&measure, &address, sizeof measure);
    HHOOK hook =
        SetWindowsHookExW(WH_CALLWNDPROC, measure, library, GetWindowThreadProcessId(window, nullptr));
    SendMessageW(window, RegisterWindowMessageW(MEASURE_MESSAGE), static_cast<WPARAM>(number), 0);
    UnhookWindowsHookEx(hook);
    std::cout << report;
}

int main() {
    HANDLE shared =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, REPORT_SIZE, REPORT_NAME);
    auto* report = static_cast<char*>(MapViewOfFile(shared, FILE_MAP_WRITE, 0, 0, REPORT_SIZE));
    HMODULE library = LoadLibraryW(L"measure-window.dll");
    if (!report || !library) return 1;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string verb;
        std::string text;
        int number = 0;
        words >> verb >> number >> std::ws;
        std::getline(words, text);
        HWND window = findSetup();
        report[text.copy(report, REPORT_SIZE - 1)] = '\0';
        if (window && (verb == "look" || verb == "fit")) look(window, number, library, report);
        if (window && verb == "press") press(findControl(window, number), number);
        if (window && verb == "write")
            SendMessageW(findControl(window, number), WM_SETTEXT, 0,
                         reinterpret_cast<LPARAM>(wide(text).c_str()));
        std::cout << std::endl;
    }
    return 0;
}
