// The bus's storage: what lies behind registration, replay, set and read.

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>
#include <utility>

#include "zet/displayconfig.h"

namespace zet {

namespace {

// A number that never comes again, so that a handle which has outlived its registration ends no other one.
void* newHandle() {
    static std::atomic<std::uintptr_t> last = 0;
    return reinterpret_cast<void*>(++last);
}

}  // namespace

void DisplayConfig::copyValue(const DisplayConfigData& from, DisplayConfigData& to) {
    to.data = from.data;
    if (from.size != 0) {
        to.data = new char[static_cast<std::size_t>(from.size)];
        std::memcpy(to.data, from.data, static_cast<std::size_t>(from.size));
        to.size = from.size;
    }
    to.configId = from.configId;
    to.state = DCFG_FLAG_REPLAY;
    to.isSet = true;
}

DisplayConfig::DisplayConfigData* DisplayConfig::findSlot(std::int64_t id) {
    constexpr std::int64_t given = displayConfigId(0x90000000);
    constexpr std::int64_t own = displayConfigId(0x90000101);
    if (id >= given && id < given + givenSlots) return &_slots[id - given];
    if (id >= own && id < own + ownSlots) return &_slots[givenSlots + (id - own)];
    return nullptr;
}

std::unique_lock<std::recursive_mutex> DisplayConfig::enter(DisplayConfigData& slot) {
    std::unique_lock delivery(slot.mutex, std::try_to_lock);
    if (delivery) return delivery;
    {
        // Whoever is inside may be waiting for a replay that has brought this thread here: its turn ends now.
        const std::lock_guard leaf(slot.leaf);
        for (const auto& entry : slot.observers) {
            if (entry && entry->_replayer == std::this_thread::get_id()) entry->_replayer = {};
        }
        slot.replayed.notify_all();
    }
    delivery.lock();
    return delivery;
}

int DisplayConfig::setConfigData(std::int64_t id, void* data, int size) {
    DisplayConfigData* const slot = findSlot(id);
    if (!slot) {
        if (size != 0) delete[] static_cast<char*>(data);
        return -1;
    }
    const auto delivery = enter(*slot);
    char* fallen = nullptr;
    {
        const std::lock_guard leaf(slot->leaf);
        if (slot->lastSize != 0) fallen = static_cast<char*>(slot->lastData);
        if (fallen && slot->deliveries > 0) {
            // Set from inside this slot's own delivery: an observer further out may still be reading the block.
            slot->retired.push_back(fallen);
            fallen = nullptr;
        }
        if (slot->configId == 0) slot->configId = id;
        slot->lastData = slot->data;
        slot->lastSize = slot->size;
        slot->data = data;
        slot->size = size;
        slot->isSet = true;
    }
    delete[] fallen;
    doEvent(*slot, DCFG_FLAG_VALUE | DCFG_FLAG_EVENT);
    return 0;
}

int DisplayConfig::readConfig(std::int64_t id, float& value) {
    DisplayConfigData* const slot = findSlot(id);
    if (!slot) return -1;
    const auto delivery = enter(*slot);
    slot->answered = 0;
    doEvent(*slot, DCFG_FLAG_READ);
    if (!slot->answered) return -1;
    DisplayConfigUserData word;
    word._slot = slot;
    value = word.getFloat();
    return 0;
}

void* DisplayConfig::registObserver(std::int64_t id, const Callback& callback, void* userData, unsigned flag) {
    DisplayConfigData* const slot = findSlot(id);
    if (!slot || !callback) return nullptr;
    const auto registration = std::make_shared<DisplayConfigUserData>();
    registration->_userData = userData;
    registration->_flag = flag;
    registration->_unRegistHandle = newHandle();
    registration->_slot = slot;
    registration->_callback = callback;
    DisplayConfigData stored;
    {
        const std::lock_guard leaf(slot->leaf);
        if (slot->configId == 0) slot->configId = id;  // once: deliveries read it without the lock
        if (flag & DCFG_FLAG_REPLAY && slot->isSet) {
            copyValue(*slot, stored);
            registration->_replayer = std::this_thread::get_id();
        }
        slot->observers.push_back(registration);
    }
    if (stored.isSet) replay(stored, *slot, *registration);
    return registration->_unRegistHandle;
}

int DisplayConfig::unRegistObserver(void*& handle) {
    void* const ended = std::exchange(handle, nullptr);
    if (!ended) return -1;
    for (DisplayConfigData& slot : _slots) {
        std::shared_ptr<DisplayConfigUserData> registration;  // goes after the lock
        const std::lock_guard leaf(slot.leaf);
        const auto found = std::find_if(slot.observers.begin(), slot.observers.end(), [ended](const auto& entry) {
            return entry && entry->_unRegistHandle == ended;
        });
        if (found == slot.observers.end()) continue;
        registration.swap(*found);
        if (slot.deliveries == 0) slot.observers.erase(found);
        return 0;
    }
    return -1;
}

void DisplayConfig::replay(DisplayConfigData& stored, DisplayConfigData& slot, DisplayConfigUserData& registration) {
    // The delivery lock is not taken: a setter that waits for this very thread may be holding it. The value is
    // delivered from a slot of its own instead. Whoever sets a newer one waits before this observer, and calls it next.
    struct Turn {
        ~Turn() {
            const std::lock_guard leaf(slot.leaf);
            registration._replayer = {};
            slot.replayed.notify_all();
        }
        DisplayConfigData& slot;
        DisplayConfigUserData& registration;
    } const turn{slot, registration};
    DisplayConfigUserData seen = registration;
    seen._slot = &stored;
    try {
        seen._callback(*this, seen);
    } catch (...) {
        void* handle = registration._unRegistHandle;  // which the caller won't get
        unRegistObserver(handle);
        throw;
    }
}

}  // namespace zet
