#include "display/condition.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zet::test {
namespace {

using ZETShow::Condition;

/// A change that comes between the waiter's test and its sleep, made outside the waiter's lock.
class ChangeAfterTest {
public:
    explicit ChangeAfterTest(Condition& condition) : _condition(condition) {}
    ~ChangeAfterTest() { _notifier.join(); }

    bool blocked() {
        const bool result = !_changed;
        if (!_notifier.joinable()) {
            _notifier = std::thread([this] {
                _changed = true;
                _condition.notifyOne();
            });
            std::this_thread::sleep_for(std::chrono::milliseconds(30));  // time enough for a wake-up to get lost
        }
        return result;
    }

private:
    Condition& _condition;
    std::atomic<bool> _changed = false;
    std::thread _notifier;
};

TEST(Condition, losesNoWakeUpOfAChangeMadeOutsideTheLock) {
    std::recursive_mutex mutex;
    Condition condition;
    {
        const std::lock_guard lock(mutex);
        ChangeAfterTest change(condition);
        condition.waitWhileUntil(mutex, Condition::Clock::now() + std::chrono::hours(1),
                                 [&] { return change.blocked(); });
    }
    const std::lock_guard lock(mutex);
    ChangeAfterTest change(condition);
    condition.waitWhile(mutex, [&] { return change.blocked(); });
}

TEST(Condition, waitsUntilTheDeadlineThroughWakeUpsThatChangeNothing) {
    std::recursive_mutex mutex;
    Condition condition;
    std::atomic<bool> done = false;
    std::thread knocking([&] {
        while (!done) condition.notifyAll();
    });
    std::unique_lock lock(mutex);
    const auto deadline = Condition::Clock::now() + std::chrono::milliseconds(20);
    condition.waitWhileUntil(mutex, deadline, [] { return true; });
    EXPECT_GE(Condition::Clock::now(), deadline);
    condition.waitWhileUntil(mutex, Condition::Clock::now() + std::chrono::hours(1), [] { return false; });
    done = true;
    knocking.join();
}

}  // namespace
}  // namespace zet::test
