#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zet::ZETShow {

/// A condition variable that works with any lock. It loses no wake-up, whatever lock the waker held for its change: the
/// waiter tests under the condition's own lock, and the waker takes and releases that lock after its change.
///
/// Lock order: the waiter's lock, then the condition's. The condition's lock is a leaf: nothing is taken under it.
class Condition {
public:
    using Clock = std::chrono::steady_clock;

    /// Waits, with `lock` released, until `blocked()` is false. Sleeps without a timer.
    template <typename Lock, typename Blocked>
    void waitWhile(Lock& lock, const Blocked& blocked) {
        for (;;) {
            std::unique_lock leaf(_leaf);
            if (!blocked()) return;
            lock.unlock();
            _wakeUp.wait(leaf);
            leaf.unlock();
            lock.lock();
        }
    }

    /// The same, but no longer than until `deadline`.
    template <typename Lock, typename Blocked>
    void waitWhileUntil(Lock& lock, Clock::time_point deadline, const Blocked& blocked) {
        for (bool timeIsUp = false; !timeIsUp;) {
            std::unique_lock leaf(_leaf);
            if (!blocked()) return;
            lock.unlock();
            timeIsUp = _wakeUp.wait_until(leaf, deadline) == std::cv_status::timeout;
            leaf.unlock();
            lock.lock();
        }
    }

    void notifyOne();
    void notifyAll();

private:
    std::mutex _leaf;
    std::condition_variable _wakeUp;
};

}  // namespace zet::ZETShow
