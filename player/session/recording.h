#pragma once

#include "session/session.h"

namespace zetplay {

/// Records each picture of the input as fast as the module draws, until the end, until `--frames`, or until the user
/// closes the window. The user may drive the view meanwhile. Throws `Failure`.
void record(Session& session);

}  // namespace zetplay
