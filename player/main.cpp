#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "media/mediasource.h"
#include "record/pngfile.h"
#include "script/script.h"
#include "session/gallery.h"
#include "session/options.h"
#include "session/playback.h"
#include "session/recording.h"
#include "session/session.h"
#include "session/stats.h"
#include "window/interrupt.h"

namespace zetplay {

namespace {

/// The next file or socket would get the number of a closed standard descriptor, and the log would go there. Opened for
/// the wrong direction, the descriptor fails each use, as a closed one does.
void holdStandardDescriptors() {
    for (const int descriptor : {0, 1, 2}) {
        // The lowest number that is free is the one that `open` takes.
        if (::fcntl(descriptor, F_GETFD) < 0) ::open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
    }
}

void logToStandardError(void*, zet::LogLevel level, const char* line) {
    const char* const name = level == zet::LogLevel::error     ? "error"
                             : level == zet::LogLevel::warning ? "warning"
                             : level == zet::LogLevel::info    ? "info"
                                                               : "debug";
    std::string text(line);
    text.erase(text.find_last_not_of("\r\n ") + 1);
    // One call a line, since several threads log.
    std::cerr << std::string("zetplay: module ") + name + ": " + text + '\n';
}

void play(Session& session, const Script* script) {
    if (script) {
        session.feed.repeatStill = true;
        script->run(session);
    } else if (!session.options.gallery.empty()) {
        makeGallery(session);
    } else if (session.recording) {
        record(session);
    } else {
        Playback(session).run();
    }
}

void finish(Session& session, const Stats& stats) {
    if (session.recording) session.recording->finish();
    if (!session.options.shot.empty()) writePng(session.options.shot, session.window->grab());
    errno = 0;
    if (session.options.stats)
        std::cout << stats.line(session.feed.framesRead(), session.feed.framesSet(), session.driver.framesDrawn())
                  << std::endl;
    if (!std::cout) throw Failure(std::string("standard output: ") + std::strerror(errno ? errno : EIO));
}

int run(const Options& options) {
    const Stats stats;
    showMediaLog(options.verbose);
    const auto most = options.verbose ? zet::LogLevel::debug : zet::LogLevel::warning;
    zet::ZETLog::instance().setSink(logToStandardError, nullptr, most);
    // Before a window opens: a script may be wrong.
    const auto script = options.script.empty() ? nullptr : std::make_unique<Script>(options.script);
    Session session(options);
    watchInterrupts();
    try {
        play(session, script.get());
    } catch (...) {
        // What was shown before the damage or the wrong line is still worth its picture and recording.
        finish(session, stats);
        if (!interrupted()) throw;
        return 128 + interrupted();
    }
    finish(session, stats);
    return interrupted() ? 128 + interrupted() : 0;
}

}  // namespace

}  // namespace zetplay

int main(int argc, char** argv) {
    zetplay::holdStandardDescriptors();
    try {
        const auto options = zetplay::parseOptions(argc, argv);
        return options ? zetplay::run(*options) : 0;
    } catch (const zetplay::WrongUsage& wrong) {
        std::cerr << "zetplay: " << wrong.what() << '\n';
        return 2;
    } catch (const std::exception& failure) {
        std::cerr << "zetplay: " << failure.what() << '\n';
        return 1;
    }
}
