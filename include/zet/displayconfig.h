#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>

#include "zet/configids.h"
#include "zet/export.h"
#include "zet/records.h"

namespace zet {

class DisplayConfigUserData;

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
/// returns when the last has returned. Sets of one identifier wait for each other, sets of different ones do not. A
/// registration is called by one thread at a time, and never with an older value after a newer one. The exception is a
/// replay that sets or reads its own identifier: it lets others in meanwhile.
///
/// What an observer throws reaches the setter: the value is set, later observers are not called. In a replay it reaches
/// the caller of `registObserver`, and the registration has ended. Observers of what the module sets are called on its
/// render thread and must not throw.
///
/// Code that runs on a display's render thread, such as an observer of what the module sets, must not set or read
/// anything on the bus. Another thread may be inside that identifier's set and wait there for the render thread: then
/// both wait for ever. Registering observers and ending registrations is safe there too.
class ZET_API DisplayConfig {
public:
    /// An observer. Its arguments are the bus and the delivery, which is valid only during the call. Its result is
    /// ignored.
    using Callback = std::function<int(DisplayConfig&, DisplayConfigUserData&)>;

    DisplayConfig();
    ~DisplayConfig();
    DisplayConfig(const DisplayConfig&) = delete;
    DisplayConfig& operator=(const DisplayConfig&) = delete;

    /// Sets `id` to a value of its kind (see `ConfigId`). What the identifier doesn't take doesn't compile.
    ///
    /// - A number identifier takes any number, and converts it. An integer one takes no floating-point number.
    /// - A handle identifier takes a pointer, null, or a handle that is a number, of any width.
    /// - An identifier without a value takes null.
    /// - A setting takes the address of its record, and copies it during the call.
    /// - A frame, a snapshot or a gesture takes the address of its record, which may go when the set returns. The bus
    ///   keeps the bare address: an observer that asks for replay would be handed the address of a record that is gone.
    /// - Each record may be given as a `SizeHelp` too. Then the bus keeps a copy.
    ///
    /// Returns 0, whatever the observers think of the value. Returns -1 for null instead of a setting and for an empty
    /// `SizeHelp`: then nothing has changed and nobody was called.
    template <typename Value, typename Given>
    int setConfig(ConfigId<Value> id, const Given& given) {
        const std::int64_t number = id;
        if constexpr (std::is_arithmetic_v<Value>) {
            static_assert(std::is_arithmetic_v<Given> || std::is_enum_v<Given>, "this identifier takes a number");
            static_assert(std::is_floating_point_v<Value> || !std::is_floating_point_v<Given>,
                          "this identifier takes an integer");
            return setConfig(number, static_cast<Value>(given));
        } else if constexpr (std::is_same_v<Value, NativeHandle>) {
            return setConfig(number, handleWord(given));
        } else if constexpr (std::is_same_v<Value, WithoutValue>) {
            static_assert(std::is_null_pointer_v<Given>, "this identifier has no value: give it nullptr");
            return setConfig(number, nullptr);
        } else if constexpr (std::is_same_v<Given, SizeHelp>) {
            return setConfig(number, given);
        } else {
            static_assert(std::is_convertible_v<Given, Value*>, "this identifier takes the address of another record");
            Value* const record = given;
            if constexpr (isSetting<Value>) return setConfig(number, SizeHelp{record, int{sizeof(Value)}});
            return setConfig(number, static_cast<const void*>(record));
        }
    }
    /// Joins the pieces into one block: an `OverlayRect`, then the path of a file. 0, or -1 if one of them is empty.
    template <typename Path>
    int setConfig(ConfigId<const OverlayRect> id, const OverlayRect& place, const Path& path) {
        return setConfig(std::int64_t{id}, SizeHelp{&place, int{sizeof place}}, path);
    }

    /// @{
    /// The same for an identifier that is known only at run time. The value's type decides the form; nothing checks
    /// that the form is the identifier's. 0, or -1 for an unknown identifier or an empty block.
    int setConfig(std::int64_t id, std::int32_t value);       ///< by value
    int setConfig(std::int64_t id, std::uint32_t value);      ///< by value
    int setConfig(std::int64_t id, float value);              ///< by value
    int setConfig(std::int64_t id, double value);             ///< by value, narrowed to float
    int setConfig(std::int64_t id, std::nullptr_t);           ///< by value: none
    int setConfig(std::int64_t id, const void* value);        ///< by value: the address of what the setter owns
    int setConfig(std::int64_t id, std::uintptr_t handle);    ///< by value: a native handle that is a number
    int setConfig(std::int64_t id, const SizeHelp& value);    ///< copies `value.size` bytes into a block of the bus
    int setConfig(std::int64_t id, const char* text);         ///< copies a string with its NUL
    int setConfig(std::int64_t id, const std::string& text);  ///< the same
    /// Copies the pieces one behind the other into one block: strings with their NUL, `SizeHelp`s, numbers.
    template <typename First, typename Second, typename... More>
    int setConfig(std::int64_t id, const First& first, const Second& second, const More&... more) {
        long datas[] = {address(getData(first)), address(getData(second)), address(getData(more))...};
        int sizes[] = {getSize(first), getSize(second), getSize(more)...};
        return setConfigHelp(datas, static_cast<int>(2 + sizeof...(More)), sizes, id);
    }
    /// @}

    /// Asks the observers of `id`, on the calling thread, for the value in force. 0 if one has answered, otherwise -1
    /// with `value` untouched. `DCFG_SCALE` answers while the flat view is in force.
    int readConfig(std::int64_t id, float& value);

    /// Adds an observer, to be called after the others, and returns its handle; null for an unknown identifier or an
    /// empty callback. `flag` holds the `DisplayConfigFlag` bits to be called for, `userData` is handed through.
    ///
    /// With `DCFG_FLAG_REPLAY` in `flag` the stored value, if there is one, is delivered before the call returns, on
    /// the calling thread, with the event word `DCFG_FLAG_REPLAY`. Never waits for a set on another thread. Such a set
    /// waits before this observer until the replay has returned. So an observer must not wait for a setter of `id`
    /// during its replay.
    void* registObserver(std::int64_t id, const Callback& callback, void* userData, unsigned flag);
    /// Ends a registration and clears `handle`: 0, or -1 for a handle without a registration. Once it has returned no
    /// call begins; a call that another thread has begun may still be running. Never waits for such a call.
    int unRegistObserver(void*& handle);

    /// @{
    /// What the joining `setConfig` takes of one piece.
    static const char* getData(const char* text);
    static int getSize(const char* text);
    static const void* getData(const SizeHelp& piece);
    static int getSize(const SizeHelp& piece);
    static const void* getData(const std::string& text);
    static int getSize(const std::string& text);
    template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number>>>
    static const void* getData(const Number& number) {
        return &number;
    }
    template <typename Number, typename = std::enable_if_t<std::is_arithmetic_v<Number>>>
    static int getSize(const Number&) {
        return int{sizeof(Number)};
    }
    /// @}

private:
    friend class DisplayConfigUserData;

    class DisplayConfigData;

    template <typename Handle>
    static const void* handleWord(const Handle& handle) {
        static_assert(std::is_pointer_v<Handle> || std::is_null_pointer_v<Handle> || std::is_integral_v<Handle>,
                      "this identifier takes a native handle");
        if constexpr (std::is_integral_v<Handle>) {
            return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(handle));
        } else {
            return handle;
        }
    }
    static long address(const void* data) { return reinterpret_cast<long>(data); }

    DisplayConfigData* findSlot(std::int64_t id);
    int setConfigData(std::int64_t id, void* data, int size);
    int setConfigHelp(long* datas, int count, int* sizes, std::int64_t id);

    std::unique_ptr<DisplayConfigData[]> _slots;
};

/// A registration and the value that is delivered to it, as its observer sees them. The accessors read the slot as it
/// is: call them inside the delivery, on its thread.
class ZET_API DisplayConfigUserData {
public:
    void* getUserData() const { return _userData; }              ///< as it was registered
    unsigned getFlag() const { return _flag; }                   ///< as it was registered
    void* getUnRegistHandle() const { return _unRegistHandle; }  ///< what `unRegistObserver` takes
    std::int64_t getConfigId() const;                            ///< the identifier that is delivered
    /// The value: a word by value, or the address of a record.
    void* getData() const;
    /// The value before this one; null in a replay. May be the stale address of a record that the setter owns.
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
    /// Writes the value in force back into the slot and marks it as answered.
    void answer(float value);

private:
    friend class DisplayConfig::DisplayConfigData;

    void* _userData = nullptr;
    unsigned _flag = 0;
    void* _unRegistHandle = nullptr;
    DisplayConfig::DisplayConfigData* _slot = nullptr;
};

}  // namespace zet
