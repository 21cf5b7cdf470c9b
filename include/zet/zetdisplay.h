#pragma once

#include <memory>

#include "zet/displayconfig.h"
#include "zet/displayconfigkit.h"
#include "zet/export.h"
#include "zet/globalconfiger.h"

namespace zet {

/// Makes a display on `config`. It draws what the bus brings into the window that `DCFG_WINDOW_INSTANCE` names, on a
/// thread of its own, until the last copy of the returned pointer is dropped.
///
/// Returns at once; EGL starts on the render thread. Empty if `config` is null. `global` must not be null. Both must
/// outlive the display. Any thread. Dropping the last copy joins the render thread: do it neither on that thread nor
/// inside an observer.
ZET_API std::shared_ptr<DisplayConfigKit> CreateZETDisplay(DisplayConfig* config, GlobalConfiger* global);

}  // namespace zet
