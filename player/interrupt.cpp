#include "interrupt.h"

#include <signal.h>

namespace zetplay {

namespace {

volatile sig_atomic_t received = 0;

}  // namespace

void watchInterrupts() {
    struct sigaction action {};
    action.sa_handler = [](int signal) { received = signal; };
    sigemptyset(&action.sa_mask);
    // Without SA_RESTART: a read from a terminal returns. A second Ctrl-C ends a run that hangs.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

int interrupted() {
    return received;
}

}  // namespace zetplay
