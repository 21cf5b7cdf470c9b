#pragma once

namespace zetplay {

/// Whether FFmpeg writes messages of its own to standard error, as it does from the start; for the whole process.
void showMediaLog(bool on);

}  // namespace zetplay
