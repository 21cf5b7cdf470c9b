#pragma once

namespace zetplay {

/// Whether FFmpeg writes its own messages to standard error, as it does by default; for the whole process.
void showMediaLog(bool on);

}  // namespace zetplay
