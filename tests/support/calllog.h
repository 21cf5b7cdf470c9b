#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "zet/zetlog.h"

namespace zet::test {

/// Catches the module's log lines while it lives, up to a level; one at a time.
class CallLog {
public:
    explicit CallLog(LogLevel most = LogLevel::debug);
    ~CallLog();
    CallLog(const CallLog&) = delete;
    CallLog& operator=(const CallLog&) = delete;

    /// Lines so far, in order.
    std::vector<std::string> lines() const;
    /// How many of them hold `text`.
    int count(const std::string& text) const;

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _lines;
};

}  // namespace zet::test
