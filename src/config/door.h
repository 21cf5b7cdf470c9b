#pragma once

#include <condition_variable>
#include <mutex>

namespace zet {

/// Guards an object that observes the bus. A call that another thread has begun may arrive while the object is being
/// destroyed or later. A call must pass the door before it touches the object. The destruction closes the door and
/// waits for the calls inside.
///
/// Observers hold the door by shared pointer, since it outlives the object. Any thread.
class Door {
public:
    /// The right to use the object, for as long as the pass lives; empty if the door is closed.
    class Pass {
    public:
        explicit Pass(Door& door) : _door(door.enter() ? &door : nullptr) {}
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;
        ~Pass() {
            if (_door) _door->leave();
        }
        explicit operator bool() const { return _door != nullptr; }

    private:
        Door* const _door;
    };

    /// Lets callers in. A new door is closed: nobody enters an object that is still being built.
    void open();
    /// Lets nobody in from now on and returns when everybody is out. Nobody inside may be waiting for this thread.
    void close();

private:
    bool enter();
    void leave();

    std::mutex _mutex;
    std::condition_variable _left;
    bool _open = false;
    int _inside = 0;
};

}  // namespace zet
