#include "zet/zetlog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace zet {

namespace {

struct Target {
    std::atomic<LogLevel> most = LogLevel::off;  // highest level that the sink takes; off without a sink
    std::mutex mutex;                            // held while the sink runs
    ZETLog::Sink sink = nullptr;
    void* user = nullptr;
};

// Never destroyed: a thread may log while the process ends.
Target& target() {
    static Target& one = *new Target;
    return one;
}

void write(LogLevel level, const char* format, va_list arguments) {
    Target& to = target();
    if (level > to.most) return;
    char line[8192];
    std::vsnprintf(line, sizeof line, format, arguments);
    const std::lock_guard lock(to.mutex);
    if (to.sink) to.sink(to.user, level, line);
}

}  // namespace

ZETLog& ZETLog::instance() {
    static ZETLog log;
    return log;
}

void ZETLog::setSink(Sink sink, void* user, LogLevel most) {
    Target& to = target();
    const std::lock_guard lock(to.mutex);
    to.sink = sink;
    to.user = user;
    to.most = sink ? most : LogLevel::off;
}

void ZETLog::error(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    write(LogLevel::error, format, arguments);
    va_end(arguments);
}

void ZETLog::warning(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    write(LogLevel::warning, format, arguments);
    va_end(arguments);
}

void ZETLog::info(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    write(LogLevel::info, format, arguments);
    va_end(arguments);
}

void ZETLog::debug(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    write(LogLevel::debug, format, arguments);
    va_end(arguments);
}

}  // namespace zet
