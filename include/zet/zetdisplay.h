#pragma once

#include <memory>

#include "zet/displayconfig.h"
#include "zet/displayconfigkit.h"
#include "zet/export.h"
#include "zet/globalconfiger.h"

namespace zet {

/// Makes a display on `config`: from now on it draws what the bus brings, on a thread of its own, into the window that
/// `DCFG_WINDOW_INSTANCE` names, until the last copy of the returned pointer goes.
///
/// Returns at once; EGL comes up on the render thread. Empty if `config` is null. `global` must not be null. Both must
/// outlive the display. Any thread; the last copy may be dropped on any but the render thread and not inside an
/// observer, since the render thread is joined there.
ZET_API std::shared_ptr<DisplayConfigKit> CreateZETDisplay(DisplayConfig* config, GlobalConfiger* global);

}  // namespace zet
