#include "window/wakeup.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

namespace zetplay {

namespace {

int bell() {
    static const int file = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    return file;
}

}  // namespace

void wake() {
    const std::uint64_t one = 1;
    // It fails only where a wake-up is already pending.
    [[maybe_unused]] const ssize_t written = write(bell(), &one, sizeof one);
}

bool waitForInput(int file, int timeoutMs) {
    pollfd inputs[] = {{file, POLLIN, 0}, {bell(), POLLIN, 0}};
    poll(inputs, 2, timeoutMs);
    std::uint64_t rings = 0;
    if (inputs[1].revents != 0) [[maybe_unused]]
        const ssize_t taken = read(bell(), &rings, sizeof rings);
    return inputs[0].revents != 0;
}

}  // namespace zetplay
