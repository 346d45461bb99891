# Cross compiler for Windows x86-64. What it makes runs on a bare Windows: the compiler's runtime is linked in.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# scripts/setup windows puts the libraries there.
get_filename_component(folder ../build/deps/windows ABSOLUTE BASE_DIR ${CMAKE_CURRENT_LIST_DIR})
set(ORLAVANE_WINDOWS_LIBRARIES ${folder} CACHE PATH "Libraries for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORLAVANE_WINDOWS_LIBRARIES)

set(CMAKE_FIND_ROOT_PATH ${ORLAVANE_WINDOWS_LIBRARIES} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The same sources give the same bytes: no time stamps.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
