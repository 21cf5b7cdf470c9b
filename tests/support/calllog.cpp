#include "support/calllog.h"

#include <algorithm>
#include <mutex>

#include "zet/zetlog.h"

namespace zet::test {

namespace {

std::mutex linesMutex;
std::vector<std::string> caught;

}  // namespace

CallLog::CallLog() {
    const std::lock_guard lock(linesMutex);
    caught.clear();
    ZETLog::instance().setSink([](LogLevel, const char* line) {
        const std::lock_guard catching(linesMutex);
        caught.emplace_back(line);
    });
}

CallLog::~CallLog() {
    ZETLog::instance().setSink(nullptr);
}

std::vector<std::string> CallLog::lines() const {
    const std::lock_guard lock(linesMutex);
    return caught;
}

int CallLog::count(const std::string& text) const {
    const auto holds = [&text](const std::string& line) { return line.find(text) != std::string::npos; };
    return static_cast<int>(std::ranges::count_if(lines(), holds));
}

}  // namespace zet::test
