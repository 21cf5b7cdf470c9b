#pragma once

namespace zetplay {

/// From now on Ctrl-C and a request to terminate only leave a mark, so that the run can end cleanly.
void watchInterrupts();
/// The signal that has come; 0 for none.
int interrupted();

}  // namespace zetplay
