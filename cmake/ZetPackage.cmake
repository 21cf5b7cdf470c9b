# Debian packages of a build: cpack --config build/release/CPackConfig.cmake
# One for each component, named by Debian's habit: the library's after its soname.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zetdisplay)
set(CPACK_PACKAGE_CONTACT "ZETDisplay maintainers <maintainers@zetdisplay.invalid>")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library dev)
if(ZET_BUILD_PLAYER)
  list(APPEND CPACK_COMPONENTS_ALL zetplay)
endif()

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)  # for zetplay, before anything is installed
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libzetdisplay${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION}
Draws decoded video into a window with OpenGL ES 2, flat or dewarped.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libzetdisplay-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DEPENDS library)
set(CPACK_DEBIAN_DEV_DESCRIPTION "${PROJECT_DESCRIPTION} - development files
Headers, a CMake package and a pkg-config file.")

set(CPACK_DEBIAN_ZETPLAY_PACKAGE_NAME zetplay)
set(CPACK_DEBIAN_ZETPLAY_PACKAGE_SECTION video)
set(CPACK_DEBIAN_ZETPLAY_PACKAGE_RECOMMENDS fonts-dejavu-core)
set(CPACK_COMPONENT_ZETPLAY_DEPENDS library)
set(CPACK_DEBIAN_ZETPLAY_DESCRIPTION "Player for the video of fisheye cameras
The reference player of ZETDisplay; scripts drive it too.")

include(CPack)
