#include "interrupt.h"

#include <signal.h>

#include <initializer_list>

namespace zetplay {

namespace {

volatile sig_atomic_t received = 0;

}  // namespace

void watchInterrupts() {
    struct sigaction action {};
    action.sa_handler = [](int signal) { received = signal; };
    sigemptyset(&action.sa_mask);
    // Without SA_RESTART: a wait for input returns. A second signal changes nothing: some programs send theirs twice,
    // to the process and to its group.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

int interrupted() {
    return received;
}

}  // namespace zetplay
