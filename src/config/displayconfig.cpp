#include "zet/displayconfig.h"

#include <bit>
#include <climits>
#include <cstring>
#include <thread>
#include <utility>

namespace zet {

namespace {

void* wordOf(std::uint32_t bits) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(bits));
}

std::uint32_t bitsOf(const void* word) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(word));
}

}  // namespace

DisplayConfig::DisplayConfig() = default;

DisplayConfig::~DisplayConfig() = default;  // an array goes in reverse order: the last slot first

DisplayConfig::DisplayConfigData::~DisplayConfigData() {
    if (lastSize != 0) delete[] static_cast<char*>(lastData);
    if (size != 0) delete[] static_cast<char*>(data);
    for (const char* block : retired) delete[] block;
}

int DisplayConfig::setConfig(std::int64_t id, std::int32_t value) {
    return setConfigData(id, wordOf(static_cast<std::uint32_t>(value)), 0);
}

int DisplayConfig::setConfig(std::int64_t id, std::uint32_t value) {
    return setConfigData(id, wordOf(value), 0);
}

int DisplayConfig::setConfig(std::int64_t id, float value) {
    return setConfigData(id, wordOf(std::bit_cast<std::uint32_t>(value)), 0);
}

int DisplayConfig::setConfig(std::int64_t id, double value) {
    return setConfig(id, static_cast<float>(value));
}

int DisplayConfig::setConfig(std::int64_t id, std::nullptr_t) {
    return setConfigData(id, nullptr, 0);
}

int DisplayConfig::setConfig(std::int64_t id, const void* value) {
    return setConfigData(id, const_cast<void*>(value), 0);
}

int DisplayConfig::setConfig(std::int64_t id, std::uintptr_t handle) {
    return setConfigData(id, reinterpret_cast<void*>(handle), 0);
}

int DisplayConfig::setConfig(std::int64_t id, const SizeHelp& value) {
    if (value.size <= 0 || !value.data) return -1;
    char* block = new char[static_cast<std::size_t>(value.size)];
    std::memcpy(block, value.data, static_cast<std::size_t>(value.size));
    return setConfigData(id, block, value.size);
}

int DisplayConfig::setConfig(std::int64_t id, const char* text) {
    return setConfig(id, SizeHelp{text, text ? getSize(text) : 0});
}

int DisplayConfig::setConfig(std::int64_t id, const std::string& text) {
    return setConfig(id, text.c_str());
}

int DisplayConfig::setConfigHelp(long* datas, int count, int* sizes, std::int64_t id) {
    std::int64_t sum = 0;
    for (int i = 0; i < count; ++i) {
        if (sizes[i] <= 0 || datas[i] == 0) return -1;
        sum += sizes[i];
    }
    if (sum > INT_MAX) return -1;
    char* block = new char[static_cast<std::size_t>(sum)];
    char* end = block;
    for (int i = 0; i < count; ++i) {
        std::memcpy(end, reinterpret_cast<const void*>(datas[i]), static_cast<std::size_t>(sizes[i]));
        end += sizes[i];
    }
    return setConfigData(id, block, static_cast<int>(sum));
}

const char* DisplayConfig::getData(const char* text) {
    return text;
}

int DisplayConfig::getSize(const char* text) {
    return text ? static_cast<int>(std::strlen(text)) + 1 : 0;
}

const void* DisplayConfig::getData(const SizeHelp& piece) {
    return piece.data;
}

int DisplayConfig::getSize(const SizeHelp& piece) {
    return piece.size;
}

const void* DisplayConfig::getData(const std::string& text) {
    return text.c_str();
}

int DisplayConfig::getSize(const std::string& text) {
    return getSize(text.c_str());
}

void DisplayConfig::doEvent(DisplayConfigData& slot, unsigned event) {
    // Ends also where an observer throws: then it is the setter that hears of it.
    struct Walk {
        Walk(DisplayConfigData& walked, unsigned word) : slot(walked), leaf(walked.leaf), outerState(walked.state) {
            slot.state = static_cast<int>(word);
            ++slot.deliveries;
        }
        ~Walk() {
            if (!leaf.owns_lock()) leaf.lock();
            if (--slot.deliveries > 0) {
                slot.state = outerState;
                return;
            }
            slot.observers.remove(nullptr);
            const auto retired = std::exchange(slot.retired, {});
            leaf.unlock();
            for (const char* block : retired) delete[] block;
        }
        DisplayConfigData& slot;
        std::unique_lock<std::mutex> leaf;
        const int outerState;
    } walk(slot, event);
    for (const auto& entry : slot.observers) {
        // Shared for the length of the call: another thread may end the registration meanwhile.
        auto registration = entry;
        if (!registration || (registration->_flag & event) == 0) continue;
        // An older value that another thread is replaying comes first, and one at a time.
        slot.replayed.wait(walk.leaf, [&] {
            const auto replayer = registration->_replayer;
            return replayer == std::thread::id() || replayer == std::this_thread::get_id();
        });
        const bool stands = entry != nullptr;
        walk.leaf.unlock();
        if (stands) registration->_callback(*this, *registration);
        registration.reset();  // may be the last: what the observer holds goes outside the lock
        walk.leaf.lock();
    }
}

std::int64_t DisplayConfigUserData::getConfigId() const {
    return _slot->configId;
}

void* DisplayConfigUserData::getData() const {
    return _slot->data;
}

void* DisplayConfigUserData::lastData() const {
    return _slot->lastData;
}

int DisplayConfigUserData::getState() const {
    return _slot->state;
}

int DisplayConfigUserData::getBlockSize() const {
    return _slot->size;
}

std::int32_t DisplayConfigUserData::getInt() const {
    return static_cast<std::int32_t>(bitsOf(_slot->data));
}

float DisplayConfigUserData::getFloat() const {
    return std::bit_cast<float>(bitsOf(_slot->data));
}

void DisplayConfigUserData::answer(float value) {
    // Under the leaf lock: a registration on another thread may be taking the value for its replay.
    const std::lock_guard leaf(_slot->leaf);
    if (_slot->size != 0) _slot->retired.push_back(static_cast<char*>(_slot->data));
    _slot->size = 0;
    _slot->data = wordOf(std::bit_cast<std::uint32_t>(value));
    _slot->answered = 1;
}

}  // namespace zet
