// Stands for a setup program in the tests of the update: leaves a file beside itself, with the folder that it
// is to update, and ends.
#include <string>

#include <windows.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path += L".started";
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    std::wstring folder(32768, L'\0');
    folder.resize(
        GetEnvironmentVariableW(L"ORLAVANE_FOLDER", folder.data(), static_cast<DWORD>(folder.size())));
    DWORD written = 0;
    WriteFile(file, folder.data(), static_cast<DWORD>(folder.size() * sizeof(wchar_t)), &written, nullptr);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) ? 0 : 1;
}
