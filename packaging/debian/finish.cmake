# What a Debian package holds beyond what is installed elsewhere: its copyright file in place of ours, its own changelog,
# and both compressed, like the manual pages. Run by cpack on the folder that becomes the package.
set(usr ${CPACK_TEMPORARY_DIRECTORY}/usr)
set(doc ${usr}/share/doc/orlavane)
file(REMOVE ${doc}/LICENSE ${doc}/LICENSE.minimp3)
file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${doc})

# One entry; the changes of the game are in its own file.
execute_process(COMMAND date -u -R -d @$ENV{SOURCE_DATE_EPOCH} OUTPUT_VARIABLE date COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${doc}/changelog "${CPACK_PACKAGE_NAME} (${CPACK_PACKAGE_VERSION}) stable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}; what it changes is told in CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${date}")

file(GLOB pages ${usr}/share/man/man6/*.6)
execute_process(COMMAND gzip -9 -n ${pages} ${doc}/changelog ${doc}/CHANGELOG.md COMMAND_ERROR_IS_FATAL ANY)
# No file is newer than what it was made of, so that the same commit gives the same package.
execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
    COMMAND_ERROR_IS_FATAL ANY)
