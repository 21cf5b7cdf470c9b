#include "zet/zetlog.h"

#include <cstdarg>
#include <cstdio>

namespace zet {

ZETLog::ZETLog(LogLevel level, Sink sink) : _level(level), _sink(sink) {}

ZETLog& ZETLog::instance() {
    static ZETLog log;
    return log;
}

void ZETLog::setSink(Sink sink) {
    _sink = sink;
}

void ZETLog::error(const char* format, ...) {
    const Sink sink = _sink;
    if (!sink) return;
    char line[8192];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    sink(_level, line);
}

}  // namespace zet
