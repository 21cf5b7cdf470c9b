#pragma once

namespace zetplay {

/// Lets FFmpeg write its own messages to standard error (off at the start); holds for the whole process.
void showMediaLog(bool on);

}  // namespace zetplay
