# cmake --install: the game, orlavane-sim, and what leads a desktop to them. What a distribution's packager may want to
# know of it is in docs/building.md.
include(GNUInstallDirs)

# A folder of the game's own, for whatever music lies beside the program, and not called "Orlavane": the game may
# remove only a folder of that name, so that this one stays the packager's.
set(program_dir ${CMAKE_INSTALL_LIBDIR}/games/orlavane)
install(TARGETS Orlavane RUNTIME DESTINATION ${program_dir})
install(TARGETS orlavane-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The command is a link to the program, which finds its own folder through it.
file(RELATIVE_PATH link_target /${CMAKE_INSTALL_BINDIR} /${program_dir}/Orlavane)
file(CREATE_LINK ${link_target} ${CMAKE_BINARY_DIR}/orlavane SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/orlavane DESTINATION ${CMAKE_INSTALL_BINDIR})

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
install(FILES ${packaging}/orlavane.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/org.example.orlavane.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
foreach(size 16 32 48 64 128 256)
    install(FILES ${packaging}/icons/orlavane-${size}.png RENAME orlavane.png
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
install(FILES ${packaging}/orlavane.6 ${packaging}/orlavane-sim.6 DESTINATION ${CMAKE_INSTALL_MANDIR}/man6)
install(FILES LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
# The decoder is part of the program. A header of the system has no licence beside it.
install(FILES ${MINIMP3_INCLUDE_DIR}/LICENSE RENAME LICENSE.minimp3 DESTINATION ${CMAKE_INSTALL_DOCDIR} OPTIONAL)
