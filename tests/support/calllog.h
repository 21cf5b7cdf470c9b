#pragma once

#include <string>
#include <vector>

namespace zet::test {

/// Catches the module's log lines while it lives; one at a time.
class CallLog {
public:
    CallLog();
    ~CallLog();
    CallLog(const CallLog&) = delete;
    CallLog& operator=(const CallLog&) = delete;

    /// Lines so far, in order.
    std::vector<std::string> lines() const;
    /// How many of them hold `text`.
    int count(const std::string& text) const;
};

}  // namespace zet::test
