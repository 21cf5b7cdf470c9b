#pragma once

#include <thread>

namespace zetplay {

/// From now on Ctrl-C and a request to terminate only set a flag, so that the run can end cleanly.
void watchInterrupts();
/// The signal that has come; 0 for none.
int interrupted();

/// Ends the system call that the thread is waiting in; the next one waits as usual.
void interruptCall(std::thread& thread);

}  // namespace zetplay
