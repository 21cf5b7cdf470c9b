#include "support/calllog.h"

#include <algorithm>

namespace zet::test {

CallLog::CallLog(LogLevel most) {
    const auto take = [](void* user, LogLevel, const char* line) {
        auto& log = *static_cast<CallLog*>(user);
        const std::lock_guard lock(log._mutex);
        log._lines.emplace_back(line);
    };
    ZETLog::instance().setSink(take, this, most);
}

CallLog::~CallLog() {
    ZETLog::instance().setSink(nullptr);
}

std::vector<std::string> CallLog::lines() const {
    const std::lock_guard lock(_mutex);
    return _lines;
}

int CallLog::count(const std::string& text) const {
    const auto holds = [&text](const std::string& line) { return line.find(text) != std::string::npos; };
    return static_cast<int>(std::ranges::count_if(lines(), holds));
}

}  // namespace zet::test
