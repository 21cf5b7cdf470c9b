#include "config/door.h"

namespace zet {

void Door::open() {
    const std::lock_guard lock(_mutex);
    _open = true;
}

void Door::close() {
    std::unique_lock lock(_mutex);
    _open = false;
    _left.wait(lock, [this] { return _inside == 0; });
}

bool Door::enter() {
    const std::lock_guard lock(_mutex);
    if (!_open) return false;
    ++_inside;
    return true;
}

void Door::leave() {
    const std::lock_guard lock(_mutex);
    if (--_inside == 0) _left.notify_all();
}

}  // namespace zet
