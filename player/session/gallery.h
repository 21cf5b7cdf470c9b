#pragma once

#include "session/session.h"

namespace zetplay {

/// Saves one picture of the input as each view shows it, "00-flat.png" to "10-wall-180.png", and all of them small on
/// one sheet, "contact-sheet.png". The picture is the first, or the one of that number with `--frames`. Throws
/// `Failure`.
void makeGallery(Session& session);

}  // namespace zetplay
