# cpack: the Debian package. scripts/package-deb configures the build that it is made of.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orlavane)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build)
set(CPACK_PACKAGE_CONTACT "The Orlavane team <team@example.org>")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Gzipped, as Debian wants it, and what it wants beside that.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/debian/finish.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://example.org/orlavane)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# What the linker saw, and OpenGL, which SDL loads by its name.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS libgl1)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "libcurl4, xdg-utils, fonts-dejavu-core, fonts-noto-core, fonts-wqy-zenhei, fonts-ipafont-gothic")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "city-building game for one player
Lay streets and avenues, zone land for homes, shops, offices and industry,
bring power and water, place schools, parks and bus stops, and set taxes and
budgets. Six missions lead from the first houses to a metropolis of 5000
citizens, by day and night and through the seasons.

Everything that is seen and heard is made by the program itself. It speaks 14
languages and needs OpenGL 3.3.

The package also holds orlavane-sim, which runs cities without a window.")
include(CPack)
