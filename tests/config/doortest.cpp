#include "config/door.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

namespace zet::test {
namespace {

TEST(Door, letsInBetweenOpenAndClose) {
    Door door;
    EXPECT_FALSE(Door::Pass(door)) << "a new door is closed";
    door.open();
    EXPECT_TRUE(door.isOpen());
    EXPECT_TRUE(Door::Pass(door));
    EXPECT_FALSE(Door::Pass());
    door.close();
    EXPECT_FALSE(door.isOpen());
    EXPECT_FALSE(Door::Pass(door));
}

TEST(Door, closesWhenTheLastIsOut) {
    Door door;
    door.open();
    std::optional<Door::Pass> first(door), second(door);
    std::atomic<bool> closed = false;
    std::thread closing([&] {
        door.close();
        closed = true;
    });
    while (door.isOpen()) std::this_thread::yield();
    EXPECT_FALSE(Door::Pass(door)) << "nobody follows while those inside are waited for";
    const Door::Pass moved = std::move(*first);
    first.reset();
    second.reset();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_FALSE(closed) << "a pass that was moved from has let its holder out";
    { const Door::Pass last = std::move(const_cast<Door::Pass&>(moved)); }
    closing.join();
}

}  // namespace
}  // namespace zet::test
