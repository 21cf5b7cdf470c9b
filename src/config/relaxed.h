#pragma once

#include <atomic>

namespace zet {

/// A number that gestures write on the setter's thread while the render thread steps it: each load and each store is
/// whole, nothing is ordered and nothing waits.
///
/// A new number that is computed from the old one is stored by `update` or a compound assignment, never by an
/// assignment. That would lose what another thread has stored since the load, even if it stores the loaded number.
template <typename T>
class Relaxed {
public:
    Relaxed(T value = T()) : _value(value) {}
    Relaxed(const Relaxed& other) : _value(static_cast<T>(other)) {}
    Relaxed& operator=(const Relaxed& other) { return *this = static_cast<T>(other); }

    operator T() const { return _value.load(std::memory_order_relaxed); }
    Relaxed& operator=(T value) {
        _value.store(value, std::memory_order_relaxed);
        return *this;
    }
    /// Replaces the number by what `change` makes of it, in one step, and returns that. `change` is called again with
    /// the newer number if another thread has stored one meanwhile.
    template <typename Change>
    T update(Change change) {
        T seen = *this;
        for (;;) {
            const T changed = change(seen);
            if (_value.compare_exchange_weak(seen, changed, std::memory_order_relaxed)) return changed;
        }
    }
    Relaxed& operator+=(T step) {
        update([step](T value) { return value + step; });
        return *this;
    }
    Relaxed& operator-=(T step) {
        update([step](T value) { return value - step; });
        return *this;
    }

private:
    std::atomic<T> _value;
};

}  // namespace zet
