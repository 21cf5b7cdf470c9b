#pragma once

#include <atomic>

#include "zet/export.h"

namespace zet {

/// Severity handed to the sink; the module's lines have no level of their own and all carry the logger's.
enum class LogLevel : int { off = 0, all = 7 };

/// The process-wide log of the module: plain traces as well as errors. Any thread.
class ZET_API ZETLog {
public:
    /// Takes one line, which is gone after the call.
    using Sink = void (*)(LogLevel level, const char* line);

    static ZETLog& instance();  ///< the one of the process

    /// Where lines go from now on; null, the default, drops them. The sink is called on the thread that logs, with a
    /// line of at most 8191 bytes, and must not call the module.
    void setSink(Sink sink);

    /// Writes one line, printf-style.
    void error(const char* format, ...) __attribute__((format(printf, 2, 3)));

private:
    explicit ZETLog(LogLevel level = LogLevel::all, Sink sink = nullptr);

    const LogLevel _level;
    std::atomic<Sink> _sink;
};

}  // namespace zet
