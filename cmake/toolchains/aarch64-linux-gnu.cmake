# For 64-bit ARM on Debian, by crossbuild-essential-arm64: cmake -B build/arm64 --toolchain THIS
# The libraries are Debian's arm64 packages on this machine, or a tree of them: -DCMAKE_SYSROOT=TREE.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})

# CMake's own tests of the toolchain read this file too.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CMAKE_SYSROOT)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
if(CMAKE_SYSROOT)
  set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
  set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
endif()
set(places /usr/lib/${triplet}/pkgconfig /usr/share/pkgconfig)
list(TRANSFORM places PREPEND "${CMAKE_SYSROOT}")
list(JOIN places ":" places)
set(ENV{PKG_CONFIG_LIBDIR} ${places})
