#pragma once

#include <atomic>

namespace zet {

/// A number that gestures write on the setter's thread while the render thread reads it: each load and each store is
/// whole, nothing is ordered and nothing waits. A compound assignment is a load and a store, not one step.
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
    Relaxed& operator+=(T step) { return *this = static_cast<T>(*this) + step; }
    Relaxed& operator-=(T step) { return *this = static_cast<T>(*this) - step; }

private:
    std::atomic<T> _value;
};

}  // namespace zet
