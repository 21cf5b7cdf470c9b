// The bus: what reaches whom and when, how long a value's memory lives; and the door of its observers.

#include <gmock/gmock.h>
#include <malloc.h>

#include <atomic>
#include <future>
#include <optional>
#include <stdexcept>
#include <thread>

#include "config/door.h"
#include "zet/zet.h"

namespace zet::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr std::int64_t id = DCFG_SCALE;
constexpr unsigned setting = DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY;

class Bus : public testing::Test {
protected:
    using Delivery = DisplayConfigUserData;

    template <typename Call>
    void* observe(unsigned mask, Call call) {
        const auto callback = [call](DisplayConfig&, Delivery& delivery) {
            call(delivery);
            return -1;  // ignored
        };
        return bus.registObserver(id, callback, nullptr, mask);
    }
    int end(void* handle) { return bus.unRegistObserver(handle); }
    /// Includes each NUL of the block.
    static std::string block(const Delivery& delivery) {
        return {static_cast<char*>(delivery.getData()), static_cast<std::size_t>(delivery.getBlockSize())};
    }

    DisplayConfig bus;
    float read = 7;
};

TEST_F(Bus, hasOneSlotForEachSignExtendedIdentifier) {
    static_assert(DCFG_WINDOW_INSTANCE == -1879048191);
    EXPECT_EQ(bus.setConfig(displayConfigId(0x90000000), 1), 0);
    EXPECT_EQ(bus.setConfig(displayConfigId(0x90000020), 1), 0);
    EXPECT_EQ(bus.setConfig(displayConfigId(0x90000101), 1), 0);
    EXPECT_EQ(bus.setConfig(displayConfigId(0x90000108), 1), 0);
    const std::int64_t others[] = {displayConfigId(0x90000021),
                                   displayConfigId(0x90000100),
                                   displayConfigId(0x90000109),
                                   displayConfigId(0x8fffffff),
                                   0x90000001,
                                   0};
    const auto callback = [](DisplayConfig&, Delivery&) { return 0; };
    for (const std::int64_t none : others) {
        EXPECT_EQ(bus.setConfig(none, 1), -1) << none;
        EXPECT_EQ(bus.setConfig(none, "a block that goes nowhere"), -1) << none;
        EXPECT_EQ(bus.readConfig(none, read), -1) << none;
        EXPECT_EQ(bus.registObserver(none, callback, nullptr, 0xff), nullptr) << none;
    }
}

TEST_F(Bus, callsThoseWhoseMaskMeetsTheEventWord) {
    std::vector<int> event, readable, none;
    const auto note = [this](unsigned mask, std::vector<int>& words) {
        return observe(mask, [&words](Delivery& delivery) { words.push_back(delivery.getState()); });
    };
    note(DCFG_FLAG_EVENT, event);
    note(DCFG_FLAG_REPLAY, none);
    void* const handle = note(setting | DCFG_FLAG_READ, readable);
    bus.setConfig(id, 1.0f);
    bus.setConfig(id, 1.0f);  // an equal value is an event too
    EXPECT_EQ(bus.readConfig(id, read), -1) << "nobody has answered";
    EXPECT_THAT(event, ElementsAre(3, 3));
    EXPECT_THAT(readable, ElementsAre(3, 3, 4));
    EXPECT_TRUE(none.empty());

    EXPECT_EQ(end(handle), 0);
    observe(setting | DCFG_FLAG_READ, [](Delivery& delivery) {
        delivery.answer(delivery.getState() & int{DCFG_FLAG_READ} ? 2.5f : std::min(delivery.getFloat(), 4.0f));
    });
    float seen = 0;
    observe(DCFG_FLAG_EVENT, [&](Delivery& delivery) { seen = delivery.getFloat(); });
    bus.setConfig(id, 9.0f);
    EXPECT_EQ(seen, 4) << "the value in force has taken the place of the value set";
    EXPECT_EQ(bus.readConfig(id, read), 0);
    EXPECT_EQ(read, 2.5f);
}

TEST_F(Bus, keepsABlockUntilTheSecondFollowingSet) {
    using std::string_literals::operator""s;
    std::vector<std::string> blocks, lastBlocks;
    std::string source = "one";
    bus.setConfig(id, source);
    source[0] = 'x';
    observe(setting, [&](Delivery& delivery) {
        EXPECT_EQ(delivery.getState(), blocks.empty() ? DCFG_FLAG_REPLAY : DCFG_FLAG_VALUE | DCFG_FLAG_EVENT);
        if (delivery.lastData()) lastBlocks.emplace_back(static_cast<char*>(delivery.lastData()));
        blocks.push_back(block(delivery));
    });
    bus.setConfig(id, "two");
    bus.setConfig(id, "ab", SizeHelp{"cdef", 2}, std::string("g"), 'h');
    EXPECT_EQ(bus.setConfig(id, SizeHelp{"abc", 0}), -1);
    EXPECT_EQ(bus.setConfig(id, SizeHelp{"abc", -1}), -1);
    EXPECT_EQ(bus.setConfig(id, SizeHelp{nullptr, 4}), -1);
    EXPECT_EQ(bus.setConfig(id, "piece", SizeHelp{"abc", 0}), -1);
    EXPECT_THAT(blocks, ElementsAre("one\0"s, "two\0"s, "ab\0cdg\0h"s)) << "the stored one first, no empty ones";
    EXPECT_THAT(lastBlocks, ElementsAre("one", "two"));
}

TEST_F(Bus, callsAnObserverUnderReplayWithNothingElse) {
    for (const bool setsItself : {false, true}) {
        // While the stored 1 is being replayed another thread sets 2.
        bus.setConfig(id, 1);
        std::promise<void> underWay;
        void* const first = observe(DCFG_FLAG_EVENT, [&](Delivery& delivery) {
            if (delivery.getInt() == 2) underWay.set_value();
        });
        std::vector<int> applied;
        std::future<int> setter;
        void* const replayed = observe(setting, [&](Delivery& delivery) {
            const int value = delivery.getInt();
            if (value == 1) {
                setter = std::async(std::launch::async, [this] { return bus.setConfig(id, 2); });
                underWay.get_future().wait();
                EXPECT_EQ(setter.wait_for(20ms), std::future_status::timeout) << "the setter waits for its turn";
                if (setsItself) bus.setConfig(id, 3);
            }
            applied.push_back(value);
        });
        EXPECT_EQ(setter.get(), 0);
        EXPECT_EQ(applied, setsItself ? std::vector({2, 3, 1}) : std::vector({1, 2}));
        EXPECT_EQ(end(first) + end(replayed), 0);
    }
}

TEST_F(Bus, handsWhatAnObserverThrowsToTheSetter) {
    bool throws = true;
    int behind = 0;
    void* const handle = observe(setting | DCFG_FLAG_READ, [&](Delivery&) {
        if (throws) throw std::runtime_error("no");
    });
    observe(DCFG_FLAG_EVENT, [&](Delivery&) { ++behind; });
    const std::vector<char> block(1 << 20);
    const auto inUse = [] { return mallinfo2().hblkhd + mallinfo2().uordblks; };
    const std::size_t before = inUse();
    for (int i = 0; i < 100; ++i) {
        EXPECT_THROW(bus.setConfig(id, SizeHelp{block.data(), 1 << 20}), std::runtime_error);
        EXPECT_THROW(bus.readConfig(id, read), std::runtime_error);
    }
    EXPECT_LT(inUse() - before, 10u << 20) << "replaced blocks go";
    EXPECT_EQ(behind, 0);

    int calls = 0;
    EXPECT_THROW(observe(setting,
                         [&](Delivery& delivery) {
                             ++calls;
                             EXPECT_EQ(delivery.getBlockSize(), 1 << 20) << "the value is set";
                             throw std::runtime_error("not here either");
                         }),
                 std::runtime_error);
    EXPECT_EQ(end(handle), 0);
    throws = false;
    EXPECT_EQ(std::async(std::launch::async, [this] { return bus.setConfig(id, 1); }).get(), 0) << "no lock is left";
    EXPECT_EQ(behind, 1);
    EXPECT_EQ(calls, 1) << "a registration whose replay has thrown is none";
}

TEST_F(Bus, deliversSetsMadeInsideADelivery) {
    std::vector<std::string> order;
    observe(DCFG_FLAG_EVENT, [&](Delivery& delivery) {
        const char* const mine = static_cast<char*>(delivery.getData());
        order.push_back("first " + std::string(mine));
        if (order.size() > 1) return;
        bus.setConfig(id, "2");
        bus.setConfig(id, "3");
        EXPECT_STREQ(mine, "1") << "the block of the outer delivery stays";
    });
    observe(DCFG_FLAG_EVENT, [&](Delivery& delivery) { order.push_back("second " + block(delivery).substr(0, 1)); });
    bus.setConfig(id, "1");
    EXPECT_THAT(order, ElementsAre("first 1", "first 2", "second 2", "first 3", "second 3", "second 3"));
}

TEST_F(Bus, endsRegistrationsAlsoInsideADelivery) {
    int calls = 0, endedCalls = 0;
    void* next = nullptr;
    // It goes with the first observer, and takes the bus's locks then.
    const auto kept = [this] {
        auto kit = std::make_shared<DisplayConfigKit>(&bus);
        kit->regist(
            id, [](DisplayConfig&, Delivery&) { return 0; }, DCFG_FLAG_REPLAY);
        return kit;
    };
    observe(DCFG_FLAG_EVENT, [&, held = kept()](Delivery& delivery) {
        ++calls;
        EXPECT_EQ(end(delivery.getUnRegistHandle()), 0);
        EXPECT_EQ(end(next), 0);
    });
    next = observe(DCFG_FLAG_EVENT, [&](Delivery&) { ++endedCalls; });
    {
        DisplayConfigKit kit(&bus);
        kit.regist(
            id, [&](DisplayConfig&, Delivery&) { return ++calls; }, DCFG_FLAG_EVENT);
        bus.setConfig(id, 1);
    }
    bus.setConfig(id, 2);
    EXPECT_EQ(calls, 2) << "the first, and the kit behind the gap";
    EXPECT_EQ(endedCalls, 0);
    EXPECT_EQ(end(next), -1) << "a handle that is not in force";
    EXPECT_EQ(end(nullptr), -1);
}

TEST_F(Bus, letsABlockedSetterHoldUpItsOwnIdentifierOnly) {
    std::promise<void> inside, gate;
    void* const handle = observe(DCFG_FLAG_EVENT, [&](Delivery& delivery) {
        if (delivery.getInt() != 3) return;
        inside.set_value();
        gate.get_future().wait();
    });
    const auto set = [this](int value) {
        return std::async(std::launch::async, [=, this] { bus.setConfig(id, value); });
    };
    const auto blocked = set(3);
    inside.get_future().wait();
    EXPECT_EQ(bus.setConfig(DCFG_MAX_SCALE, 1), 0);
    std::vector<int> replayed;
    void* const later = observe(DCFG_FLAG_REPLAY, [&](Delivery& delivery) { replayed.push_back(delivery.getInt()); });
    EXPECT_THAT(replayed, ElementsAre(3)) << "the value that the blocked setter has stored";
    EXPECT_EQ(end(later), 0);
    EXPECT_EQ(end(handle), 0) << "neither waits for the setter";
    const auto second = set(2);
    EXPECT_EQ(second.wait_for(20ms), std::future_status::timeout);
    gate.set_value();
}

TEST_F(Bus, holdsUnderSettersReadersAndObserversThatComeAndGo) {
    // A block is one byte, repeated: a torn or freed one shows.
    std::atomic<int> torn = 0, setters = 2;
    const auto look = [&torn](Delivery& delivery) {
        const std::string text = block(delivery);
        if (text != std::string(text.size() - 1, 'a') + '\0') ++torn;
    };
    std::vector<std::jthread> threads;
    for (const std::size_t length : {50u, 60u}) {
        threads.emplace_back([&, length] {
            for (int i = 0; i < 3000; ++i) bus.setConfig(id, std::string(length, 'a'));
            --setters;
        });
        threads.emplace_back([&] {
            while (setters > 0) end(observe(setting, look));
        });
    }
    while (setters > 0) bus.readConfig(id, read);
    threads.clear();
    EXPECT_EQ(torn, 0);
}

TEST(Door, closesWhenTheLastIsOut) {
    Door door;
    EXPECT_FALSE(Door::Pass(door)) << "a new door is closed";
    door.open();
    std::optional<Door::Pass> inside(std::in_place, door);
    const auto closed = std::async(std::launch::async, [&] { door.close(); });
    while (Door::Pass(door)) std::this_thread::yield();  // from now on nobody can enter
    EXPECT_EQ(closed.wait_for(5ms), std::future_status::timeout) << "somebody is still inside";
    inside.reset();
}

}  // namespace
}  // namespace zet::test
