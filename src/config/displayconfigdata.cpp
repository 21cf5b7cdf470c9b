#include "config/displayconfigdata.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

namespace zet {

namespace {

// A number that is never used twice: a stale handle must not end another registration.
void* newHandle() {
    static std::atomic<std::uintptr_t> last = 0;
    return reinterpret_cast<void*>(++last);
}

}  // namespace

/// A walk over the observers. Also ends when an observer throws, and lets the exception pass to the setter.
class DisplayConfig::DisplayConfigData::Walk {
public:
    Walk(DisplayConfigData& walked, unsigned event) : slot(walked), leaf(walked._leaf), _outerState(walked._state) {
        slot._state = static_cast<int>(event);
        ++slot._deliveries;
    }
    ~Walk() {
        if (!leaf.owns_lock()) leaf.lock();
        if (--slot._deliveries > 0) {
            slot._state = _outerState;
            return;
        }
        slot._observers.remove(nullptr);
        const auto retired = std::exchange(slot._retired, {});
        leaf.unlock();  // free the blocks outside the lock
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    DisplayConfigData& slot;
    std::unique_lock<std::mutex> leaf;

private:
    const int _outerState;
};

/// The time in which a registration is being replayed. Setters wait for its end.
class DisplayConfig::DisplayConfigData::Turn {
public:
    Turn(DisplayConfigData& slot, Registration& registration) : _slot(slot), _registration(registration) {}
    ~Turn() {
        const std::lock_guard leaf(_slot._leaf);
        _registration.replayer = {};
        _slot._replayed.notify_all();
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    DisplayConfigData& _slot;
    Registration& _registration;
};

void DisplayConfig::DisplayConfigData::setConfigData(DisplayConfig& bus, std::int64_t id, Value value) {
    const auto delivery = enter();
    std::unique_ptr<char[]> fallen;
    {
        const std::lock_guard leaf(_leaf);
        fallen = std::move(_lastValue.block);
        // Set from inside this slot's own delivery: an observer further out may still be reading the block.
        if (fallen && _deliveries > 0) _retired.push_back(std::move(fallen));
        if (_configId == 0) _configId = id;
        _lastValue = std::exchange(_value, std::move(value));
        _isSet = true;
    }
    fallen.reset();
    doEvent(bus, DCFG_FLAG_VALUE | DCFG_FLAG_EVENT);
}

int DisplayConfig::DisplayConfigData::readConfig(DisplayConfig& bus, float& value) {
    const auto delivery = enter();
    _answered = false;
    doEvent(bus, DCFG_FLAG_READ);
    if (!_answered) return -1;
    DisplayConfigUserData word;
    word._slot = this;
    value = word.getFloat();
    return 0;
}

void* DisplayConfig::DisplayConfigData::registObserver(DisplayConfig& bus, std::int64_t id, const Callback& callback,
                                                       void* userData, unsigned flag) {
    const auto registration = std::make_shared<Registration>();
    registration->_userData = userData;
    registration->_flag = flag;
    registration->_unRegistHandle = newHandle();
    registration->_slot = this;
    registration->callback = callback;
    DisplayConfigData stored;
    {
        const std::lock_guard leaf(_leaf);
        if (_configId == 0) _configId = id;
        if (flag & DCFG_FLAG_REPLAY && _isSet) {
            copyValue(stored);
            registration->replayer = std::this_thread::get_id();
        }
        _observers.push_back(registration);
    }
    if (stored._isSet) replay(bus, stored, *registration);
    return registration->_unRegistHandle;
}

bool DisplayConfig::DisplayConfigData::unRegistObserver(const void* handle) {
    std::shared_ptr<Registration> registration;  // destroyed after the lock
    const std::lock_guard leaf(_leaf);
    const auto found = std::find_if(_observers.begin(), _observers.end(),
                                    [handle](const auto& entry) { return entry && entry->_unRegistHandle == handle; });
    if (found == _observers.end()) return false;
    registration.swap(*found);
    if (_deliveries == 0) _observers.erase(found);
    return true;
}

std::unique_lock<std::recursive_mutex> DisplayConfig::DisplayConfigData::enter() {
    std::unique_lock delivery(_delivery, std::try_to_lock);
    if (delivery) return delivery;
    {
        // A replay on this very thread has brought it here, and the thread inside may be waiting for that replay:
        // its turn ends now.
        const std::lock_guard leaf(_leaf);
        for (const auto& entry : _observers) {
            if (entry && entry->replayer == std::this_thread::get_id()) entry->replayer = {};
        }
        _replayed.notify_all();
    }
    delivery.lock();
    return delivery;
}

// Calls those whose mask shares a bit with `event`, in their order. Under the delivery lock.
void DisplayConfig::DisplayConfigData::doEvent(DisplayConfig& bus, unsigned event) {
    Walk walk(*this, event);
    for (const auto& entry : _observers) {
        // Shared: another thread may end the registration during the call.
        auto registration = entry;
        if (!registration || (registration->_flag & event) == 0) continue;
        // An older value that another thread is replaying comes first.
        _replayed.wait(walk.leaf, [&] {
            const auto replayer = registration->replayer;
            return replayer == std::thread::id() || replayer == std::this_thread::get_id();
        });
        const bool isInForce = entry != nullptr;
        walk.leaf.unlock();
        if (isInForce) registration->callback(bus, *registration);
        registration.reset();  // may be the last owner: what the observer holds is freed outside the lock
        walk.leaf.lock();
    }
}

// Without the delivery lock: a setter that waits for this very thread may be holding it.
void DisplayConfig::DisplayConfigData::replay(DisplayConfig& bus, DisplayConfigData& stored,
                                              Registration& registration) {
    const Turn turn(*this, registration);
    DisplayConfigUserData seen = registration;
    seen._slot = &stored;
    try {
        registration.callback(bus, seen);
    } catch (...) {
        unRegistObserver(registration._unRegistHandle);  // the caller won't get the handle
        throw;
    }
}

void DisplayConfig::DisplayConfigData::copyValue(DisplayConfigData& to) const {
    to._value.word = _value.word;
    if (_value.size != 0) {
        to._value.block.reset(new char[static_cast<std::size_t>(_value.size)]);
        std::memcpy(to._value.block.get(), _value.word, static_cast<std::size_t>(_value.size));
        to._value.word = to._value.block.get();
        to._value.size = _value.size;
    }
    to._configId = _configId;
    to._state = DCFG_FLAG_REPLAY;
    to._isSet = true;
}

void DisplayConfig::DisplayConfigData::answer(void* word) {
    // Under the leaf lock: a registration on another thread may be taking the value for its replay.
    const std::lock_guard leaf(_leaf);
    if (_value.block) _retired.push_back(std::move(_value.block));
    _value = {word, 0, nullptr};
    _answered = true;
}

}  // namespace zet
