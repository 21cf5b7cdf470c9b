#pragma once

#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "zet/displayconfig.h"

namespace zet {

/// One slot of the bus: a value, its observers, and the order in which threads come to both.
///
/// Two locks. The delivery lock is held by a setter while it calls the observers, so that sets come one after another.
/// It is recursive: an observer may set its own identifier. The leaf lock guards value and list for a moment at a time,
/// and no observer is called under it. Registering and unregistering take the leaf lock alone: they never wait for a
/// setter, who may be waiting for them.
///
/// A replay is a delivery of its own, from a copy of the value. It holds neither lock. Setters wait for its end before
/// they call the observer that is being replayed.
class DisplayConfig::DisplayConfigData {
public:
    /// A word by value, or a block that the slot owns.
    struct Value {
        void* word = nullptr;  // the value itself, or the address of the block
        int size = 0;          // bytes of the block; 0 for a word
        std::unique_ptr<char[]> block;
    };

    DisplayConfigData() = default;
    DisplayConfigData(const DisplayConfigData&) = delete;
    DisplayConfigData& operator=(const DisplayConfigData&) = delete;

    void setConfigData(DisplayConfig& bus, std::int64_t id, Value value);
    /// 0 if an observer has answered, otherwise -1.
    int readConfig(DisplayConfig& bus, float& value);
    void* registObserver(DisplayConfig& bus, std::int64_t id, const Callback& callback, void* userData, unsigned flag);
    /// Whether `handle` was one of this slot's.
    bool unRegistObserver(const void* handle);

    // What a delivery hands to the observer.
    std::int64_t configId() const { return _configId; }
    const Value& value() const { return _value; }
    void* lastWord() const { return _lastValue.word; }
    int state() const { return _state; }
    void answer(void* word);

private:
    struct Registration : DisplayConfigUserData {
        Callback callback;
        std::thread::id replayer;  // the thread that replays the stored value
    };
    class Walk;
    class Turn;

    std::unique_lock<std::recursive_mutex> enter();
    void doEvent(DisplayConfig& bus, unsigned event);
    void replay(DisplayConfig& bus, DisplayConfigData& stored, Registration& registration);
    void copyValue(DisplayConfigData& to) const;

    std::recursive_mutex _delivery;
    std::mutex _leaf;

    // Written under both locks; read under either.
    Value _value;
    Value _lastValue;
    bool _isSet = false;                            // there is a value
    std::vector<std::unique_ptr<char[]>> _retired;  // blocks that an outer delivery may still read

    // Under the leaf lock.
    std::list<std::shared_ptr<Registration>> _observers;  // an empty entry has ended during a delivery
    int _deliveries = 0;                                  // nested walks over the observers
    std::condition_variable _replayed;
    std::int64_t _configId = 0;  // written once, before the first delivery

    // Under the delivery lock.
    int _state = 0;          // event word of the delivery that is running
    bool _answered = false;  // an observer has written the value in force
};

}  // namespace zet
