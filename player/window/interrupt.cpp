#include "window/interrupt.h"

#include <signal.h>

#include <atomic>
#include <cerrno>
#include <initializer_list>

#include "window/wakeup.h"

namespace zetplay {

namespace {

std::atomic<int> received = 0;
static_assert(std::atomic<int>::is_always_lock_free);

}  // namespace

void watchInterrupts() {
    wake();  // first here: only from now on may a signal handler call it
    struct sigaction action {};
    action.sa_handler = [](int signal) {
        const int error = errno;
        received = signal;
        wake();
        errno = error;
    };
    sigemptyset(&action.sa_mask);
    // Without SA_RESTART: a wait for input returns. A second signal must change nothing: some programs send theirs
    // twice, to the process and to its group.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

int interrupted() {
    return received;
}

void interruptCall(std::thread& thread) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigemptyset(&action.sa_mask);
    sigaction(SIGUSR1, &action, nullptr);
    pthread_kill(thread.native_handle(), SIGUSR1);
}

}  // namespace zetplay
