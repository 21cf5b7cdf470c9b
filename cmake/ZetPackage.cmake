# Debian packages of a build: cpack --config build/release/CPackConfig.cmake
# One for each component, named by Debian's habit: the library's after its soname.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zetdisplay)
set(CPACK_PACKAGE_CONTACT "ZETDisplay maintainers <maintainers@zetdisplay.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # would be put before each package's own
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library dev)
if(ZET_BUILD_PLAYER)
  list(APPEND CPACK_COMPONENTS_ALL zetplay)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_ZET_CHANGES ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/documents.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/scripts.cmake)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)  # for zetplay, before anything is installed
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libzetdisplay${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION}
Draws decoded video into a window with OpenGL ES 2: flat, or dewarped into
ten further views that gestures turn. A player drives it over a bus.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libzetdisplay-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DEPENDS library)
set(CPACK_DEBIAN_DEV_DESCRIPTION "${PROJECT_DESCRIPTION} - development files
What a player is built with: headers, a CMake package and a pkg-config
file of the library that draws decoded video with OpenGL ES 2.")

set(CPACK_DEBIAN_ZETPLAY_PACKAGE_NAME zetplay)
set(CPACK_DEBIAN_ZETPLAY_PACKAGE_SECTION video)
set(CPACK_DEBIAN_ZETPLAY_PACKAGE_RECOMMENDS fonts-dejavu-core)
set(CPACK_COMPONENT_ZETPLAY_DEPENDS library)
set(CPACK_DEBIAN_ZETPLAY_DESCRIPTION "Player for the video of fisheye cameras
Shows what FFmpeg opens, flat or in one of ten dewarping views, and writes
pictures and video of it. The reference player of ZETDisplay; scripts drive it.")

include(CPack)
