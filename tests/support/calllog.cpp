#include "support/calllog.h"

#include <algorithm>
#include <mutex>

#include "zet/zetlog.h"

namespace zet::test {

namespace {

std::mutex linesMutex;
std::vector<std::string> caught;

void catchLine(LogLevel, const char* line) {
    const std::lock_guard lock(linesMutex);
    caught.emplace_back(line);
}

}  // namespace

CallLog::CallLog() {
    {
        const std::lock_guard lock(linesMutex);
        caught.clear();
    }
    ZETLog::instance().setSink(catchLine);
}

CallLog::~CallLog() {
    ZETLog::instance().setSink(nullptr);
}

std::vector<std::string> CallLog::lines() const {
    const std::lock_guard lock(linesMutex);
    return caught;
}

int CallLog::count(const std::string& text) const {
    const auto all = lines();
    return static_cast<int>(std::count_if(
        all.begin(), all.end(), [&text](const std::string& line) { return line.find(text) != std::string::npos; }));
}

}  // namespace zet::test
