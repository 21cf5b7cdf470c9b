#include "session/recording.h"

#include "session/controls.h"
#include "session/progress.h"

namespace zetplay {

namespace {

/// 0 if nobody knows.
std::int64_t framesToCome(const Session& session) {
    if (session.options.frames > 0) return session.options.frames;
    return session.options.loop ? 0 : session.source->frameCount();
}

}  // namespace

void record(Session& session) {
    Controls controls(session);
    Progress progress("recording", framesToCome(session));
    session.feed.repeatStill = session.options.frames > 0;
    for (controls.handleEvents(); !session.stopped() && session.feed.fetch(); controls.handleEvents()) {
        session.drawNext();
        progress.step();
    }
}

}  // namespace zetplay
