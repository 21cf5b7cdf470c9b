// The bus: what reaches whom, when, and what a value's memory may count on.

#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <future>
#include <limits>
#include <thread>

#include "zet/zet.h"

namespace zet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t id = DCFG_SCALE;
constexpr unsigned setting = DCFG_FLAG_VALUE | DCFG_FLAG_REPLAY;

/// Registers callables and ends them with the test.
class Bus : public testing::Test {
protected:
    template <typename Call>
    void* observe(std::int64_t which, unsigned mask, Call call) {
        return bus.registObserver(
            which,
            [call](DisplayConfig&, DisplayConfigUserData& delivery) {
                call(delivery);
                return -1;  // nobody looks
            },
            nullptr, mask);
    }
    /// Notes the event words that arrive.
    void* note(unsigned mask, std::vector<int>& words) {
        return observe(id, mask, [&words](DisplayConfigUserData& delivery) { words.push_back(delivery.getState()); });
    }

    DisplayConfig bus;
};

TEST_F(Bus, hasOneSlotForEachOf33SignExtendedIdentifiers) {
    static_assert(DCFG_WINDOW_INSTANCE == -1879048191);
    EXPECT_EQ(bus.setConfig(displayConfigId(0x90000000), 1), 0);
    EXPECT_EQ(bus.setConfig(displayConfigId(0x90000020), 1), 0);
    for (const std::int64_t none :
         {displayConfigId(0x90000021), displayConfigId(0x8fffffff), std::int64_t{0x90000001}, std::int64_t{0},
          std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        float value = 7;
        EXPECT_EQ(bus.setConfig(none, 1), -1) << none;
        EXPECT_EQ(bus.setConfig(none, "a block that goes nowhere"), -1) << none;
        EXPECT_EQ(bus.readConfig(none, value), -1) << none;
        EXPECT_EQ(value, 7) << none;
        EXPECT_EQ(observe(none, 0xff, [](DisplayConfigUserData&) {}), nullptr) << none;
    }
}

TEST_F(Bus, deliversWordsAsTheyWereSet) {
    int place = 0;
    std::vector<std::function<void(DisplayConfigUserData&)>> expected;
    observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& delivery) {
        EXPECT_EQ(delivery.getConfigId(), id);
        EXPECT_EQ(delivery.getBlockSize(), 0);
        expected.back()(delivery);
    });
    const auto set = [&](auto value, auto check) {
        expected.emplace_back(check);
        EXPECT_EQ(bus.setConfig(id, value), 0);
    };
    set(-5, [](auto& delivery) { EXPECT_EQ(delivery.getInt(), -5); });
    set(0xfffffffeu, [](auto& delivery) { EXPECT_EQ(static_cast<unsigned>(delivery.getInt()), 0xfffffffe); });
    set(-1.5f, [](auto& delivery) { EXPECT_EQ(delivery.getFloat(), -1.5f); });
    set(0.1, [](auto& delivery) { EXPECT_EQ(delivery.getFloat(), 0.1f); });
    set(static_cast<const void*>(&place), [&](auto& delivery) { EXPECT_EQ(delivery.getData(), &place); });
    set(nullptr, [&](auto& delivery) {
        EXPECT_EQ(delivery.getData(), nullptr);
        EXPECT_EQ(delivery.lastData(), &place);
    });
    EXPECT_EQ(expected.size(), 6u);
}

TEST_F(Bus, callsThoseWhoseMaskMeetsTheEventWord) {
    std::vector<int> event, late, readable, none;
    note(DCFG_FLAG_EVENT, event);
    note(setting, late);
    note(setting | DCFG_FLAG_READ, readable);
    note(DCFG_FLAG_REPLAY, none);
    bus.setConfig(id, 1.0f);
    bus.setConfig(id, 1.0f);  // an equal value is an occurrence too
    float value = 0;
    EXPECT_EQ(bus.readConfig(id, value), -1) << "nobody has answered";
    EXPECT_THAT(event, ElementsAre(3, 3));
    EXPECT_THAT(late, ElementsAre(3, 3));
    EXPECT_THAT(readable, ElementsAre(3, 3, 4));
    EXPECT_THAT(none, IsEmpty());
}

TEST_F(Bus, readsWhatAnObserverAnswers) {
    const auto handle = observe(id, setting | DCFG_FLAG_READ, [](DisplayConfigUserData& delivery) {
        delivery.answer(delivery.getState() & DCFG_FLAG_READ ? 2.5f : std::min(delivery.getFloat(), 4.0f));
    });
    std::vector<float> seen;
    observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& delivery) { seen.push_back(delivery.getFloat()); });
    bus.setConfig(id, 9.0f);
    EXPECT_THAT(seen, ElementsAre(4.0f)) << "the value in force has taken the place of the value set";
    float value = 0;
    EXPECT_EQ(bus.readConfig(id, value), 0);
    EXPECT_EQ(value, 2.5f);
    void* ended = handle;
    EXPECT_EQ(bus.unRegistObserver(ended), 0);
    EXPECT_EQ(bus.readConfig(id, value), -1);
}

TEST_F(Bus, refusesEmptyBlocksAndKeepsTheValue) {
    bus.setConfig(id, 1);
    bus.setConfig(id, 2);
    int calls = 0;
    observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData&) { ++calls; });
    const char bytes[4] = {};
    EXPECT_EQ(bus.setConfig(id, SizeHelp{bytes, 0}), -1);
    EXPECT_EQ(bus.setConfig(id, SizeHelp{bytes, -1}), -1);
    EXPECT_EQ(bus.setConfig(id, SizeHelp{nullptr, 4}), -1);
    EXPECT_EQ(bus.setConfig(id, static_cast<const char*>(nullptr)), -1);
    EXPECT_EQ(bus.setConfig(id, "piece", SizeHelp{bytes, 0}), -1);
    EXPECT_EQ(calls, 0);
    observe(id, setting, [](DisplayConfigUserData& delivery) { EXPECT_EQ(delivery.getInt(), 2); });
}

TEST_F(Bus, keepsABlockUntilTheSecondFollowingSet) {
    std::vector<std::string> texts, lastTexts;
    observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& delivery) {
        texts.emplace_back(static_cast<char*>(delivery.getData()), static_cast<std::size_t>(delivery.getBlockSize()));
        if (delivery.lastData()) lastTexts.emplace_back(static_cast<char*>(delivery.lastData()));
    });
    std::string source = "one";
    bus.setConfig(id, source);
    source[0] = 'x';
    bus.setConfig(id, "two");
    bus.setConfig(id, "ab", SizeHelp{"cdef", 2}, std::string("g"), 'h');
    using std::string_literals::operator""s;
    EXPECT_THAT(texts, ElementsAre("one\0"s, "two\0"s, "ab\0cdg\0h"s));
    EXPECT_THAT(lastTexts, ElementsAre("one", "two"));
}

TEST_F(Bus, replaysTheStoredValueOnceToWhomAsksForIt) {
    bus.setConfig(id, "kept");
    std::vector<int> states, none;
    std::string text;
    observe(id, setting | DCFG_FLAG_READ, [&](DisplayConfigUserData& delivery) {
        states.push_back(delivery.getState());
        text = static_cast<char*>(delivery.getData());
        EXPECT_EQ(delivery.getBlockSize(), 5);
    });
    note(DCFG_FLAG_EVENT, none);
    observe(DCFG_MAX_SCALE, setting, [](DisplayConfigUserData&) { ADD_FAILURE() << "there is no value"; });
    EXPECT_THAT(states, ElementsAre(DCFG_FLAG_REPLAY));
    EXPECT_EQ(text, "kept");
    EXPECT_THAT(none, IsEmpty());
}

TEST_F(Bus, replaysAgainWhatASetHasOvertaken) {
    // While the stored 1 is being replayed another thread sets 2: the observer must not end with the 1.
    bus.setConfig(id, 1);
    std::vector<int> applied;
    observe(id, setting, [&](DisplayConfigUserData& delivery) {
        const int value = delivery.getInt();
        if (value == 1) std::thread([&] { bus.setConfig(id, 2); }).join();
        applied.push_back(value);
    });
    EXPECT_THAT(applied, ElementsAre(2, 1, 2));
}

TEST_F(Bus, deliversSetsMadeInsideADelivery) {
    // The first observer sets the same identifier twice more, and another one; blocks of the outer delivery stay.
    std::vector<std::string> order;
    bool nested = false;
    observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& delivery) {
        const char* const mine = static_cast<char*>(delivery.getData());
        order.push_back("first " + std::string(mine));
        if (std::exchange(nested, true)) return;
        bus.setConfig(id, "2");
        bus.setConfig(id, "3");
        bus.setConfig(DCFG_MAX_SCALE, 1);
        EXPECT_STREQ(mine, "1") << "the block of the outer delivery";
    });
    observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& delivery) {
        order.push_back("second " + std::string(static_cast<char*>(delivery.getData())));
        EXPECT_EQ(delivery.getState(), DCFG_FLAG_VALUE | DCFG_FLAG_EVENT);
    });
    observe(DCFG_MAX_SCALE, DCFG_FLAG_EVENT, [&](DisplayConfigUserData&) { order.push_back("other"); });
    bus.setConfig(id, "1");
    EXPECT_THAT(order, ElementsAre("first 1", "first 2", "second 2", "first 3", "second 3", "other", "second 3"));
}

TEST_F(Bus, endsRegistrationsAlsoInsideADelivery) {
    std::vector<int> first, second, third;
    void* handles[3] = {};
    handles[0] = observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& delivery) {
        first.push_back(delivery.getInt());
        EXPECT_EQ(delivery.getUnRegistHandle(), handles[0]);
        void* mine = handles[0];
        EXPECT_EQ(bus.unRegistObserver(mine), 0);
        EXPECT_EQ(mine, nullptr);
        EXPECT_EQ(bus.unRegistObserver(handles[1]), 0);
    });
    handles[1] = observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& d) { second.push_back(d.getInt()); });
    handles[2] = observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData& d) { third.push_back(d.getInt()); });
    void* const ended = handles[1];
    bus.setConfig(id, 1);
    bus.setConfig(id, 2);
    EXPECT_THAT(first, ElementsAre(1));
    EXPECT_THAT(second, IsEmpty());
    EXPECT_THAT(third, ElementsAre(1, 2));
    void* again = ended;
    EXPECT_EQ(bus.unRegistObserver(again), -1) << "a handle that is not in force";
    void* null = nullptr;
    EXPECT_EQ(bus.unRegistObserver(null), -1);
}

TEST_F(Bus, kitEndsItsRegistrationsOnce) {
    struct Kit : DisplayConfigKit {
        using DisplayConfigKit::DisplayConfigKit;
        using DisplayConfigKit::unRegistAll;
    };
    int calls = 0;
    const auto count = [&](DisplayConfig&, DisplayConfigUserData& delivery) {
        EXPECT_EQ(delivery.getUserData(), nullptr);
        return ++calls;
    };
    {
        Kit kit(&bus);
        EXPECT_EQ(kit.unRegistAll(), 0);
        EXPECT_EQ(kit.regist(id, count, DCFG_FLAG_EVENT), 0);
        EXPECT_EQ(kit.regist(DCFG_MAX_SCALE, count, DCFG_FLAG_EVENT), 0);
        const Kit copy = kit;  // holds the same handles
        bus.setConfig(id, 1);
        bus.setConfig(DCFG_MAX_SCALE, 1);
    }
    bus.setConfig(id, 2);
    bus.setConfig(DCFG_MAX_SCALE, 2);
    EXPECT_EQ(calls, 2);
}

/// One setter of `id` that stands inside its delivery until it is let go.
class BlockedSetter : public Bus {
protected:
    void block(std::int32_t value) {
        handle = observe(id, DCFG_FLAG_EVENT, [this](DisplayConfigUserData&) {
            inside.set_value();
            gate.get_future().wait();
        });
        setter = std::thread([this, value] { bus.setConfig(id, value); });
        inside.get_future().wait();
    }
    void letGo() {
        gate.set_value();
        setter.join();
    }

    std::promise<void> inside, gate;
    std::thread setter;
    void* handle = nullptr;
};

TEST_F(BlockedSetter, makesOnlySettersOfItsIdentifierWait) {
    block(1);
    EXPECT_EQ(bus.setConfig(DCFG_MAX_SCALE, 1), 0);
    std::atomic<bool> returned = false;
    std::thread second([&] {
        void* ended = handle;
        bus.unRegistObserver(ended);
        bus.setConfig(id, 2);
        returned = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(returned);
    letGo();
    second.join();
}

TEST_F(BlockedSetter, isWaitedForNeitherByUnregistrationNorByReplay) {
    int calls = 0;
    block(3);
    void* const later = observe(id, DCFG_FLAG_EVENT, [&](DisplayConfigUserData&) { ++calls; });
    void* ended = handle;
    EXPECT_EQ(bus.unRegistObserver(ended), 0);
    ended = later;
    EXPECT_EQ(bus.unRegistObserver(ended), 0);
    std::vector<int> replayed;
    observe(id, DCFG_FLAG_REPLAY, [&](DisplayConfigUserData& delivery) { replayed.push_back(delivery.getInt()); });
    EXPECT_THAT(replayed, ElementsAre(3)) << "the value that the blocked setter has stored";
    letGo();
    EXPECT_EQ(calls, 0);
}

TEST_F(Bus, holdsUnderSettersReadersAndObserversThatComeAndGo) {
    // A block is one byte, repeated: a torn or freed one shows.
    std::atomic<int> torn = 0;
    const auto whole = [&torn](DisplayConfigUserData& delivery) {
        const std::string text(static_cast<char*>(delivery.getData()));
        const bool sound = text.find_first_not_of(text[0]) == std::string::npos && delivery.getConfigId() == id &&
                           delivery.getBlockSize() == static_cast<int>(text.size()) + 1;
        if (!sound) ++torn;
    };
    std::atomic<bool> done = false;
    std::vector<std::thread> threads;
    for (const std::size_t length : {50u, 60u}) {
        threads.emplace_back([&, length] {
            for (int i = 0; i < 3000; ++i) bus.setConfig(id, std::string(length, 'a'));
        });
    }
    threads.emplace_back([&] {
        for (float value = 0; !done;) bus.readConfig(id, value);
    });
    for (int t = 0; t < 2; ++t) {
        threads.emplace_back([&] {
            while (!done) {
                void* handle = observe(id, setting, whole);
                bus.unRegistObserver(handle);
            }
        });
    }
    threads[0].join();
    threads[1].join();
    done = true;
    for (std::size_t t = 2; t < threads.size(); ++t) threads[t].join();
    EXPECT_EQ(torn, 0);
}

}  // namespace
}  // namespace zet::test
