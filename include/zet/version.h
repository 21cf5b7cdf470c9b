#pragma once

#include "zet/export.h"

/// @{
/// The version of these headers. The build takes its own from here.
#define ZET_VERSION_MAJOR 2
#define ZET_VERSION_MINOR 0
#define ZET_VERSION_PATCH 0
/// @}

/// The version as one number that grows with it, for `#if`: 2.1.3 is 20103.
#define ZET_VERSION (ZET_VERSION_MAJOR * 10000 + ZET_VERSION_MINOR * 100 + ZET_VERSION_PATCH)

namespace zet {

/// The version of the library that runs, as `ZET_VERSION` counts it. Any thread.
ZET_API int version();

}  // namespace zet
