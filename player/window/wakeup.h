#pragma once

namespace zetplay {

/// Ends the present or the next `waitForInput`. Any thread; a signal handler only after somebody else's first call.
void wake();

/// Sleeps until `file` can be read or somebody calls `wake`, or for `timeoutMs` at most; below 0 for ever. True if
/// there is something to read.
bool waitForInput(int file, int timeoutMs);

}  // namespace zetplay
