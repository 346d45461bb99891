# Programs for Windows: paths in UTF-8 for all of them; for the game also its icon and its version, and no console.
set(windows_sources ${PROJECT_SOURCE_DIR}/packaging/windows)

# Four numbers, as Windows wants them: 0.2 is 0,2,0,0.
string(REGEX MATCHALL "[0-9]+" numbers "${ORLAVANE_VERSION}")
list(APPEND numbers 0 0 0 0)
list(SUBLIST numbers 0 4 numbers)
list(JOIN numbers "," ORLAVANE_VERSION_NUMBERS)
list(JOIN numbers "." ORLAVANE_VERSION_DOTTED)
configure_file(${windows_sources}/orlavane.manifest.in ${CMAKE_BINARY_DIR}/orlavane.manifest @ONLY)
configure_file(${windows_sources}/manifest.rc.in ${CMAKE_BINARY_DIR}/manifest.rc @ONLY)
configure_file(${windows_sources}/orlavane.rc.in ${CMAKE_BINARY_DIR}/orlavane.rc @ONLY)
set_source_files_properties(${CMAKE_BINARY_DIR}/manifest.rc PROPERTIES
    OBJECT_DEPENDS ${CMAKE_BINARY_DIR}/orlavane.manifest)
set_source_files_properties(${CMAKE_BINARY_DIR}/orlavane.rc PROPERTIES
    OBJECT_DEPENDS ${PROJECT_SOURCE_DIR}/packaging/icons/orlavane.ico)
add_library(windows_manifest OBJECT ${CMAKE_BINARY_DIR}/manifest.rc)
set(WINDOWS_MANIFEST windows_manifest) # for whoever may be built elsewhere too
add_library(windows_version OBJECT ${CMAKE_BINARY_DIR}/orlavane.rc)

# The game itself, with the libraries beside it.
function(orlavane_windows_game target)
    target_link_libraries(${target} PRIVATE windows_manifest windows_version SDL2::SDL2main)
    set_target_properties(${target} PROPERTIES WIN32_EXECUTABLE ON)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_RUNTIME_DLLS:${target}> $<TARGET_FILE_DIR:${target}>
        COMMAND_EXPAND_LISTS)
endfunction()
