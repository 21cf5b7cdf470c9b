#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "zet/configids.h"
#include "zet/export.h"
#include "zet/records.h"

namespace zet {

class DisplayConfigUserData;

template <typename T>
concept Arithmetic = std::is_arithmetic_v<T>;

/// Bytes to be copied onto the bus.
struct SizeHelp {
    const void* data = nullptr;  ///< read during the call
    int size = 0;                ///< bytes
};

/// The configuration bus: one slot for each identifier from 0x90000000 to 0x90000020 and from 0x90000101 to 0x90000108,
/// each with a value and observers.
///
/// The player creates it, gives it to `CreateZETDisplay` and sets identifiers on it; it must outlive everything that
/// observes it. All operations may be called on any thread. A set runs the observers on the calling thread and
/// returns when the last has returned; sets of one identifier wait for each other, sets of different ones do not. A
/// registration is called by one thread at a time, and never with an older value after a newer one; only a replay that
/// sets or reads its own identifier lets others in meanwhile.
///
/// What an observer throws reaches the setter: the value is set, the observers behind are not called. In a replay it
/// reaches the caller of `registObserver`, and the registration has ended. Observers of what the module sets are called
/// on its render thread and must not throw.
///
/// Code that runs on a display's render thread, such as an observer of what the module sets, neither sets nor reads
/// anything on the bus: another thread may be inside that identifier's set and wait there for the render thread, and
/// then both wait for ever. To register observers and to end registrations is safe there too.
class ZET_API DisplayConfig {
public:
    /// An observer: the bus and the delivery, which is only good during the call. Its result is ignored.
    using Callback = std::function<int(DisplayConfig&, DisplayConfigUserData&)>;

    DisplayConfig();
    ~DisplayConfig();
    DisplayConfig(const DisplayConfig&) = delete;
    DisplayConfig& operator=(const DisplayConfig&) = delete;

    // Each set returns 0, or -1 for an identifier outside the table or an empty block; then nothing has changed.

    int setConfig(std::int64_t id, std::int32_t value);   ///< by value
    int setConfig(std::int64_t id, std::uint32_t value);  ///< by value
    int setConfig(std::int64_t id, float value);          ///< by value
    int setConfig(std::int64_t id, double value);         ///< by value, narrowed to float
    int setConfig(std::int64_t id, std::nullptr_t);       ///< by value: none
    /// By value: a native handle, or the address of a record that stays the setter's. A gesture record may be
    /// changed by the delivery: its coordinates are scaled in place.
    ///
    /// The bus keeps the bare address, and delivers it again to each observer that asks for replay. The module does so
    /// for no frame, snapshot or gesture: these records may go when the set returns. It does so for every setting, at
    /// each change of view: the record of a setting that is given here must live as long as the bus. Give settings as
    /// typed records or as `SizeHelp` instead, of which the bus keeps a copy.
    int setConfig(std::int64_t id, const void* value);
    int setConfig(std::int64_t id, std::uintptr_t handle);  ///< by value: a native handle that is a number
    /// Copies `value.size` bytes into a block of the bus.
    int setConfig(std::int64_t id, const SizeHelp& value);
    /// Copies a string with its NUL into a block of the bus.
    int setConfig(std::int64_t id, const char* text);
    int setConfig(std::int64_t id, const std::string& text);  ///< the same
    /// Copies the record of a setting into a block of the bus. `record` is read during the call; null is refused.
    template <SettingRecord Record>
    int setConfig(std::int64_t id, const Record* record) {
        return setConfig(id, SizeHelp{record, static_cast<int>(sizeof(Record))});
    }
    /// Copies the pieces one behind the other into a block of the bus: strings with their NUL, `SizeHelp`s, numbers.
    template <typename First, typename Second, typename... More>
    int setConfig(std::int64_t id, const First& first, const Second& second, const More&... more) {
        long datas[] = {address(getData(first)), address(getData(second)), address(getData(more))...};
        int sizes[] = {getSize(first), getSize(second), getSize(more)...};
        return setConfigHelp(datas, static_cast<int>(2 + sizeof...(More)), sizes, id);
    }

    /// Asks the observers of `id`, on the calling thread, for its value as it stands now. 0 if one has answered,
    /// otherwise -1 with `value` untouched. `DCFG_SCALE` answers while the flat view is in force.
    int readConfig(std::int64_t id, float& value);

    /// Adds an observer behind those that are there and returns its handle; null for an identifier outside the table
    /// or an empty callback. `flag` holds the `DisplayConfigFlag` bits to be called for, `userData` is handed through.
    ///
    /// With `DCFG_FLAG_REPLAY` in `flag` the stored value, if there is one, is delivered before the call returns, on
    /// the calling thread, with the event word `DCFG_FLAG_REPLAY`. Never waits for a set that another thread is in; a
    /// set on another thread that comes to this observer waits until the replay has returned, so an observer that is
    /// replayed must not wait for a setter of `id`.
    void* registObserver(std::int64_t id, const Callback& callback, void* userData, unsigned flag);
    /// Ends a registration and clears `handle`: 0, or -1 for a handle that is not in force. Once it has returned no
    /// call begins; a call that another thread has begun may still be finishing. Never waits for such a call.
    int unRegistObserver(void*& handle);

    /// @{
    /// What the joining `setConfig` takes of one piece.
    static const char* getData(const char* text);
    static int getSize(const char* text);
    static const void* getData(const SizeHelp& piece);
    static int getSize(const SizeHelp& piece);
    static const void* getData(const std::string& text);
    static int getSize(const std::string& text);
    template <Arithmetic Number>
    static const void* getData(const Number& number) {
        return &number;
    }
    template <Arithmetic Number>
    static int getSize(const Number&) {
        return static_cast<int>(sizeof(Number));
    }
    /// @}

private:
    friend class DisplayConfigUserData;

    static constexpr int givenSlots = 33;  // 0x90000000 and up: identifiers that all players of the interface share
    static constexpr int ownSlots = 8;     // 0x90000101 and up: this module's own

    struct DisplayConfigData {
        DisplayConfigData() = default;
        ~DisplayConfigData();
        DisplayConfigData(const DisplayConfigData&) = delete;
        DisplayConfigData& operator=(const DisplayConfigData&) = delete;

        std::recursive_mutex mutex;  // held by a setter across a delivery
        std::int64_t configId = 0;
        void* data = nullptr;
        void* lastData = nullptr;
        int state = 0;     // event word of the delivery now running
        int answered = 0;  // set by an observer that has written `data` itself
        int size = 0;      // bytes of the block in `data`; 0 for a value
        int lastSize = 0;
        std::list<std::shared_ptr<DisplayConfigUserData>> observers;  // empty entries: ended during a delivery

        std::mutex leaf;             // guards the value and the list against threads outside a delivery
        bool isSet = false;          // there is a value
        int deliveries = 0;          // nested walks over `observers`
        std::vector<char*> retired;  // blocks that fell out during a nested set, freed when the outermost ends
        std::condition_variable replayed;
    };

    static long address(const void* data) { return reinterpret_cast<long>(data); }

    DisplayConfigData* findSlot(std::int64_t id);
    int setConfigData(std::int64_t id, void* data, int size);
    int setConfigHelp(long* datas, int count, int* sizes, std::int64_t id);
    void doEvent(DisplayConfigData& slot, unsigned event);
    static std::unique_lock<std::recursive_mutex> enter(DisplayConfigData& slot);
    static void copyValue(const DisplayConfigData& from, DisplayConfigData& to);
    void replay(DisplayConfigData& stored, DisplayConfigData& slot, DisplayConfigUserData& registration);

    DisplayConfigData _slots[givenSlots + ownSlots];
};

/// A registration and the value that is delivered to it, as its observer sees them. The accessors read the slot as it
/// stands: call them inside the delivery, on its thread.
class ZET_API DisplayConfigUserData {
public:
    void* getUserData() const { return _userData; }              ///< as it was registered
    unsigned getFlag() const { return _flag; }                   ///< as it was registered
    void* getUnRegistHandle() const { return _unRegistHandle; }  ///< what `unRegistObserver` takes
    std::int64_t getConfigId() const;                            ///< the identifier that is delivered
    /// The value: a word by value, or the address of a record.
    void* getData() const;
    /// The value before this one; null in a replay. The address of a record that stays the setter's may be stale.
    void* lastData() const;
    /// Event word of the delivery, `DisplayConfigFlag` bits.
    int getState() const;

    /// Bytes of the block that `getData` points to; 0 if the value is a word.
    int getBlockSize() const;

    /// The value as a record; null if there is none or its block is too short for one. A word by value is taken for the
    /// record's address, so ask only where the identifier has a record.
    template <typename Record>
    Record* getRecord() const {
        const bool whole = getBlockSize() == 0 || getBlockSize() >= static_cast<int>(sizeof(Record));
        return whole ? static_cast<Record*>(getData()) : nullptr;
    }
    std::int32_t getInt() const;  ///< the word by value as int
    float getFloat() const;       ///< the word by value as the bits of a float
    /// Writes the value that is really in force back into the slot and marks it as answered.
    void answer(float value);

private:
    friend class DisplayConfig;

    void* _userData = nullptr;
    unsigned _flag = 0;
    void* _unRegistHandle = nullptr;
    DisplayConfig::DisplayConfigData* _slot = nullptr;
    void* _reserved = nullptr;
    DisplayConfig::Callback _callback;
    std::thread::id _replayer;  // the thread that the stored value is being replayed on
};

}  // namespace zet
