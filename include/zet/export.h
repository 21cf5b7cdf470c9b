#pragma once

/// Marks the names that libZETDisplay.so exports; everything else in it is hidden.
#define ZET_API __attribute__((visibility("default")))
