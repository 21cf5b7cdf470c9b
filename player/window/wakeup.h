#pragma once

namespace zetplay {

/// Ends the present or the next `waitForInput`. Any thread, and signal handlers once somebody else has called it.
void wake();

/// Sleeps until `file` can be read or somebody calls `wake`, or for `timeoutMs` at most; below 0 for ever. True if
/// there is something to read.
bool waitForInput(int file, int timeoutMs);

}  // namespace zetplay
