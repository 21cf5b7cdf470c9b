#include "display/condition.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zet::test {
namespace {

using namespace std::chrono_literals;
using ZETShow::Condition;

TEST(Condition, losesNoWakeUpOfAChangeMadeOutsideTheLock) {
    for (const bool timed : {false, true}) {
        std::recursive_mutex mutex;
        Condition condition;
        std::atomic<bool> changed = false;
        std::thread notifier;
        // The change comes between the waiter's test and its sleep.
        const auto blocked = [&] {
            const bool result = !changed;
            if (notifier.joinable()) return result;
            notifier = std::thread([&] {
                changed = true;
                condition.notifyOne();
            });
            std::this_thread::sleep_for(30ms);  // time enough for a wake-up to get lost
            return result;
        };
        const std::lock_guard lock(mutex);
        if (timed) condition.waitWhileUntil(mutex, Condition::Clock::now() + 1h, blocked);
        if (!timed) condition.waitWhile(mutex, blocked);
        notifier.join();
    }
}

}  // namespace
}  // namespace zet::test
