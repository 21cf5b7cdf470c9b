#include "progress.h"

#include <gtest/gtest.h>

namespace zetplay {
namespace {

TEST(Progress, LineShowsShareAndCounts) {
    const struct {
        std::int64_t done, total;
        std::string expected;
    } cases[] = {
        {0, 10, "save [" + std::string(40, ' ') + "]   0%  0/10"},
        {5, 10, "save [" + std::string(20, '#') + std::string(20, ' ') + "]  50%  5/10"},
        {10, 10, "save [" + std::string(40, '#') + "] 100%  10/10"},
        {12, 10, "save [" + std::string(40, '#') + "] 100%  12/10"},  // the input said too little
        {7, 0, "save 7"},
    };
    for (const auto& line : cases) EXPECT_EQ(progressLine("save", line.done, line.total), line.expected);
}

}  // namespace
}  // namespace zetplay
