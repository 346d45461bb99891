/* A plugin of nsis. When a file cannot be written to its end, the engine shows a box of its own and ends the
   section, with no way back for the player. In an attempt it is an error like any other.

     attempt::Call ADDRESS   calls that function of the script

   The error flag tells that the engine has ended it, or Abort. */
#include <windows.h>

#include <nsis/pluginapi.h>

void __declspec(dllexport)
    Call(HWND window, int string_size, TCHAR* variables, stack_t** stacktop, extra_parameters* engine) {
    (void)window;
    EXDLL_INIT();
    const int address = popint();
    const int was_silent = engine->exec_flags->silent;
    engine->exec_flags->silent = 1; /* or the box would come */
    const int ended = engine->ExecuteCodeSegment(address - 1, NULL);
    engine->exec_flags->silent = was_silent;
    engine->exec_flags->exec_error = ended != 0;
}

BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID reserved) {
    (void)library;
    (void)reason;
    (void)reserved;
    return TRUE;
}
