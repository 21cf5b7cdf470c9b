# What other projects find: the library and its public headers, a CMake package (target ZET::Display) and a pkg-config
# file. Both name places relative to themselves, so an installed tree may be moved. Each component becomes a package:
# library, dev, and zetplay with its own rules in player/.
include(CMakePackageConfigHelpers)

install(
  TARGETS ZETDisplay
  EXPORT ZETDisplayTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          COMPONENT library
          NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
          COMPONENT dev)
install(DIRECTORY include/zet DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/ZETDisplay)
install(
  EXPORT ZETDisplayTargets
  NAMESPACE ZET::
  DESTINATION ${package}
  COMPONENT dev)
configure_package_config_file(cmake/ZETDisplayConfig.cmake.in ZETDisplayConfig.cmake INSTALL_DESTINATION ${package})
write_basic_package_version_file(ZETDisplayConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/ZETDisplayConfig.cmake ${PROJECT_BINARY_DIR}/ZETDisplayConfigVersion.cmake
  DESTINATION ${package}
  COMPONENT dev)

# What a program links beside a static library; a shared one brings it along. Not Requires.private: `pkg-config
# --static` would ask for a static FFmpeg with all that it is made of.
set(ZET_PC_REQUIRES)
set(ZET_PC_LIBS)
if(NOT BUILD_SHARED_LIBS)
  set(ZET_PC_REQUIRES "Requires: egl glesv2 freetype2 libavfilter libavutil")
  if(ZET_XCB_FOUND)
    string(APPEND ZET_PC_REQUIRES " xcb")
  endif()
  string(APPEND ZET_PC_REQUIRES "\n")
  set(ZET_PC_LIBS " -pthread")
endif()
cmake_path(SET ZET_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
cmake_path(RELATIVE_PATH ZET_PC_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
configure_file(cmake/zetdisplay.pc.in zetdisplay.pc @ONLY)
install(
  FILES ${PROJECT_BINARY_DIR}/zetdisplay.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT dev)
