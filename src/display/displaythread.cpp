// The render thread's body, its two waits, and how other threads run code on it.

#include "display/display.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

using std::chrono::milliseconds;

namespace {

constexpr milliseconds drawPace{17};  // least time from the end of a draw to the start of the next

}  // namespace

int Display::run() {
    _thread = std::thread([this] { renderLoop(); });
    return 0;
}

void Display::renderLoop() {
    ZETLog::instance().debug("Display::run begin");
    _lastDraw = Condition::Clock::now();
    const std::lock_guard lock(_mutex);
    _renderThreadId = std::this_thread::get_id();
    init();
    while (!_exitRequested) {
        if (!hasTask()) drawOwed();
        waitForWork();
        if (hasTask()) runTasks();
    }
    unInit();
    _threadEnded = 1;
    _taskDoneCond.notifyAll();
    _renderThreadId = {};  // another thread may be given this one's id
    ZETLog::instance().debug("Display::run end");
}

void Display::drawOwed() {
    while (!_exitRequested && drawIsOwed()) {
        if (_redrawCount > 0) --_redrawCount;
        waitForPace();
        if (hasTask()) return;
        if (drawFrame() != 0) _lastDraw = Condition::Clock::now();
        _frameReady = 0;
    }
}

void Display::waitForPace() {
    const auto now = Condition::Clock::now();
    const auto elapsed = std::chrono::duration_cast<milliseconds>(now - _lastDraw);
    if (elapsed >= drawPace) return;
    _paceCond.waitWhileUntil(_mutex, now + (drawPace - elapsed), [this] { return !_exitRequested && !hasTask(); });
}

void Display::waitForWork() {
    _idleCond.waitWhile(_mutex, [this] { return !drawIsOwed() && !_exitRequested && !hasTask(); });
}

void Display::runTasks() {
    // By index: a swap inside a task releases the lock, and others may post.
    for (std::size_t i = 0; i < _tasks.size(); ++i) {
        const auto task = std::move(_tasks[i]);
        task();
    }
    _tasks.clear();
    _taskDoneCond.notifyAll();
}

int Display::postTask(const std::function<int()>& task) {
    std::unique_lock lock(_mutex);
    if (_renderThreadId == std::this_thread::get_id()) return task();
    if (_threadEnded || _gaveUp) return 0;
    _tasks.push_back(task);
    _idleCond.notifyOne();
    _paceCond.notifyOne();
    // An exit request doesn't end the wait: the render thread still runs what is queued, and the task may use this
    // thread's stack.
    waitForThread(lock, [this] { return hasTask() && !_threadEnded; });
    return 0;
}

bool Display::isStuck() const {
    return _swapBegan && Condition::Clock::now() - *_swapBegan > patience && !_platform->isAlive();
}

void Display::giveUp() {
    _gaveUp = true;
    _tasks.clear();  // their posters return
    _taskDoneCond.notifyAll();
    tell(DISPLAY_ERROR_STUCK, "the driver doesn't return from a swap to a server that is gone", __LINE__);
}

}  // namespace zet::ZETShow
