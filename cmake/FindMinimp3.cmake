# The MP3 decoder, one header: the system's, or the one that scripts/setup fetched. Makes the target minimp3.
find_path(MINIMP3_INCLUDE_DIR minimp3.h PATH_SUFFIXES minimp3)
find_path(MINIMP3_INCLUDE_DIR minimp3.h PATHS ${CMAKE_SOURCE_DIR}/build/deps/minimp3
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Minimp3 REQUIRED_VARS MINIMP3_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "scripts/setup fetches it")

if(Minimp3_FOUND AND NOT TARGET minimp3)
    add_library(minimp3 INTERFACE IMPORTED GLOBAL)
    set_target_properties(minimp3 PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${MINIMP3_INCLUDE_DIR})
endif()
