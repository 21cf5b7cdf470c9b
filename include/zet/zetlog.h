#pragma once

#include "zet/export.h"

namespace zet {

/// How much a line of the log matters. The numbers are those of syslog (RFC 5424) and stay.
enum class LogLevel : int {
    off = 0,      ///< as the highest level of a sink: no lines
    error = 3,    ///< the player has no picture, or not the one that it asked for
    warning = 4,  ///< something was refused, or the module makes do with less
    info = 6,     ///< what a report of a fault should hold: the driver, its version
    debug = 7,    ///< the steps of the module's life and of its calls
};

/// The process-wide log of the module. Any thread.
class ZET_API ZETLog {
public:
    /// Takes one line of at most 8191 bytes, valid only during the call. `user` is as given to `setSink`. Called on the
    /// thread that logs, one line at a time. It must not wait for another thread, nor call the module or the log.
    using Sink = void (*)(void* user, LogLevel level, const char* line);

    static ZETLog& instance();  ///< the one of the process

    /// Where lines go from now on, and up to which level; null, the default, drops them all. When this returns, the
    /// previous sink isn't running and won't be called again.
    void setSink(Sink sink, void* user = nullptr, LogLevel most = LogLevel::debug);

    /// @{
    /// Writes one line, printf-style. Costs next to nothing where nobody takes lines of that level.
    void error(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void warning(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void info(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void debug(const char* format, ...) __attribute__((format(printf, 2, 3)));
    /// @}

private:
    ZETLog() = default;
};

}  // namespace zet
