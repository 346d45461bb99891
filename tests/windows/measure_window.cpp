// Measures the words of a window from inside its own program, into which look-at-setup brings it: a font is
// known to nobody else.
#include "windows/measure_window.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <string>

static std::wstring textOf(HWND window) {
    std::wstring text(4096, L'\0');
    text.resize(static_cast<size_t>(
        SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

static std::wstring classOf(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

// In one line of UTF-8.
static std::string printable(const std::wstring& text) {
    std::string bytes(4 * text.size(), '\0');
    bytes.resize(static_cast<size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(),
                                                         static_cast<int>(text.size()), bytes.data(),
                                                         static_cast<int>(bytes.size()), nullptr, nullptr)));
    std::string line;
    for (const char c : bytes)
        if (c == '\n')
            line += "\\n";
        else if (c != '\r')
            line += c;
    return line;
}

static SIZE sizeOf(const std::wstring& text, HFONT font, UINT format, int width) {
    HDC screen = GetDC(nullptr);
    const HGDIOBJ before = SelectObject(screen, font);
    RECT box = {0, 0, width, 0};
    DrawTextW(screen, text.c_str(), -1, &box, DT_CALCRECT | format);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return {box.right, box.bottom};
}

// What the control needs for its words, in the width that it has.
static SIZE needOf(HWND control, const std::wstring& kind, const std::wstring& text, SIZE room) {
    const auto font = reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0));
    const auto style = static_cast<UINT>(GetWindowLongPtrW(control, GWL_STYLE));
    if (kind == L"Static") {
        const UINT type = style & SS_TYPEMASK;
        const UINT wrap = type == SS_SIMPLE || type == SS_LEFTNOWORDWRAP ? DT_SINGLELINE : DT_WORDBREAK;
        return sizeOf(text, font, wrap | DT_EXPANDTABS | (style & SS_NOPREFIX ? DT_NOPREFIX : 0), room.cx);
    }
    const UINT type = style & BS_TYPEMASK;
    const bool isPressed = type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON;
    const int beside =
        isPressed ? 8 : GetSystemMetrics(SM_CXMENUCHECK) + 4; // its edges, or the box and a gap
    SIZE need = sizeOf(text, font, style & BS_MULTILINE ? DT_WORDBREAK : DT_SINGLELINE, room.cx - beside);
    need.cx += beside;
    return need;
}

static void writeLine(std::string& report, HWND window, const std::wstring& kind, SIZE room, SIZE need,
                      const std::wstring& text) {
    char numbers[160];
    std::snprintf(numbers, sizeof numbers, "%d\t%d\t%ld\t%ld\t%ld\t%ld\t", GetDlgCtrlID(window),
                  IsWindowEnabled(window), room.cx, room.cy, need.cx, need.cy);
    report += numbers + printable(kind) + "\t" + printable(text) + "\n";
}

static void measureLine(std::string& report, HWND list, SIZE room, const wchar_t* text) {
    const LRESULT width = SendMessageW(list, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text));
    writeLine(report, list, L"Line", room, {static_cast<LONG>(width) + 12, 0}, text);
}

static void measureList(std::string& report, HWND list, SIZE room) {
    const auto count = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int i = 0; i < count; i++) {
        wchar_t text[1024] = L"";
        LVITEMW item = {};
        item.pszText = text;
        item.cchTextMax = 1024;
        SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        measureLine(report, list, room, text);
    }
}

// Either of all controls with the words that they show, or of one with others.
struct Look {
    int number;
    std::wstring words;
    std::string report;
};

static BOOL CALLBACK measureControl(HWND control, LPARAM data) {
    auto& look = *reinterpret_cast<Look*>(data);
    if (!IsWindowVisible(control) || (look.number && look.number != GetDlgCtrlID(control))) return TRUE;
    const std::wstring kind = classOf(control);
    RECT box;
    GetClientRect(control, &box);
    const SIZE room = {box.right, box.bottom};
    if (kind == WC_LISTVIEWW && look.number) measureLine(look.report, control, room, look.words.c_str());
    if (kind == WC_LISTVIEWW && !look.number) measureList(look.report, control, room);
    if (kind == PROGRESS_CLASSW && !look.number) {
        const auto length = static_cast<LONG>(SendMessageW(control, PBM_GETRANGE, FALSE, 0));
        const auto place = static_cast<LONG>(SendMessageW(control, PBM_GETPOS, 0, 0));
        writeLine(look.report, control, L"Bar", {length, 0}, {place, 0}, L"");
    }
    const LONG_PTR type = GetWindowLongPtrW(control, GWL_STYLE) & SS_TYPEMASK;
    const bool isPicture = kind == L"Static" && (type == SS_ICON || type == SS_BITMAP);
    if (isPicture || (kind != L"Static" && kind != L"Button")) return TRUE;
    const std::wstring text = look.number ? look.words : textOf(control);
    if (!text.empty()) writeLine(look.report, control, kind, room, needOf(control, kind, text, room), text);
    return TRUE;
}

// Beside the icon and the three buttons.
static void measureTitle(std::string& report, HWND window) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    RECT box;
    GetClientRect(window, &box);
    const LONG room = box.right - 4 * GetSystemMetrics(SM_CXSIZE);
    const std::wstring text = textOf(window);
    HFONT font = CreateFontIndirectW(&metrics.lfCaptionFont);
    writeLine(report, window, L"Title", {room, metrics.iCaptionHeight},
              sizeOf(text, font, DT_SINGLELINE, room), text);
    DeleteObject(font);
}

extern "C" __declspec(dllexport) LRESULT CALLBACK measureWindow(int code, WPARAM fromHere, LPARAM data) {
    const auto& message = *reinterpret_cast<CWPSTRUCT*>(data);
    if (code == HC_ACTION && message.message == RegisterWindowMessageW(MEASURE_MESSAGE)) {
        HANDLE shared = OpenFileMappingW(FILE_MAP_WRITE, FALSE, REPORT_NAME);
        auto* place = static_cast<char*>(MapViewOfFile(shared, FILE_MAP_WRITE, 0, 0, REPORT_SIZE));
        Look look = {static_cast<int>(message.wParam), wide(place), ""};
        if (!look.number) measureTitle(look.report, message.hwnd);
        EnumChildWindows(message.hwnd, measureControl, reinterpret_cast<LPARAM>(&look));
        std::copy_n(look.report.c_str(), std::min(look.report.size(), REPORT_SIZE - 1) + 1, place);
        UnmapViewOfFile(place);
        CloseHandle(shared);
    }
    return CallNextHookEx(nullptr, code, fromHere, data);
}
