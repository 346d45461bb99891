// hold-file FILE: keeps a file open that nobody else may have, as virus scanners do, until its input ends.
#include <cstdio>
#include <string>

#include <windows.h>

int main() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    const HANDLE file = CreateFileW(words[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 1;
    std::puts("held");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return CloseHandle(file) ? 0 : 1;
}
