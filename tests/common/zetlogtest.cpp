// The log: which lines reach whom.

#include <gmock/gmock.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "zet/zetlog.h"

namespace zet::test {
namespace {

TEST(Log, handsEachSinkTheLinesOfItsLevels) {
    using Lines = std::vector<std::pair<LogLevel, std::string>>;
    const auto note = [](void* user, LogLevel level, const char* line) {
        static_cast<Lines*>(user)->emplace_back(level, line);
    };
    auto& log = ZETLog::instance();
    const auto writeAll = [&log] {
        log.error("%d", 1);
        log.warning("two");
        log.info("three");
        log.debug("four %s", std::string(9000, 'x').c_str());
    };
    Lines few, all;
    log.setSink(note, &few, LogLevel::warning);
    writeAll();
    log.setSink(note, &all);
    writeAll();
    log.setSink(nullptr);
    writeAll();
    EXPECT_EQ(few, (Lines{{LogLevel::error, "1"}, {LogLevel::warning, "two"}}));
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(all[3].first, LogLevel::debug);
    EXPECT_EQ(all[3].second.size(), 8191u);
}

TEST(Log, leavesASinkBeforeAnotherTakesItsPlace) {
    struct Taker {
        std::atomic<bool> gone = false;
        std::atomic<bool>* late = nullptr;
    };
    std::atomic<bool> done = false, late = false;
    const auto note = [](void* user, LogLevel, const char*) {
        auto& taker = *static_cast<Taker*>(user);
        if (taker.gone) *taker.late = true;
    };
    std::vector<std::jthread> writers;
    for (int i = 0; i < 2; ++i) {
        writers.emplace_back([&done] {
            while (!done) ZETLog::instance().warning("line");
        });
    }
    for (int i = 0; i < 500; ++i) {
        Taker taker;
        taker.late = &late;
        ZETLog::instance().setSink(note, &taker);
        std::this_thread::yield();
        ZETLog::instance().setSink(nullptr);
        taker.gone = true;
        std::this_thread::yield();
    }
    done = true;
    writers.clear();
    EXPECT_FALSE(late);
}

}  // namespace
}  // namespace zet::test
