#pragma once

#include "session/session.h"

namespace zetplay {

/// Shows one picture of the input in all views and saves each, "00-flat.png" to "10-wall-180.png", and all of them
/// small on one sheet, "contact-sheet.png". The picture is the first, or with `--frames` that one. Throws `Failure`.
void makeGallery(Session& session);

}  // namespace zetplay
