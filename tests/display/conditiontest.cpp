#include "display/condition.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zet::test {
namespace {

using ZETShow::Condition;

TEST(Condition, losesNoWakeUpOfAChangeMadeOutsideTheLock) {
    // Each step is answered before the next is made, so a single lost wake-up ends in a hang.
    std::recursive_mutex mutex;
    Condition asked, answered;
    std::atomic<int> question = 0, answer = 0;
    constexpr int last = 50000;
    std::thread waiter([&] {
        std::unique_lock lock(mutex);
        while (answer < last) {
            asked.waitWhile(mutex, [&] { return question == answer; });
            answer = question.load();
            answered.notifyOne();
        }
    });
    std::recursive_mutex own;
    std::unique_lock lock(own);
    for (int i = 1; i <= last; ++i) {
        question = i;
        asked.notifyOne();
        answered.waitWhile(own, [&] { return answer != i; });
    }
    waiter.join();
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
