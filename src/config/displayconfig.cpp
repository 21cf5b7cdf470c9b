#include "zet/displayconfig.h"

#include <bit>
#include <climits>
#include <cstring>
#include <utility>

#include "config/displayconfigdata.h"

namespace zet {

namespace {

void* wordOf(std::uint32_t bits) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(bits));
}

std::uint32_t bitsOf(const void* word) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(word));
}

constexpr std::int64_t firstGiven = displayConfigId(0x90000000);  // the common list
constexpr int givenSlots = 33;
constexpr std::int64_t firstOwn = displayConfigId(0x90000101);  // this module's own
constexpr int ownSlots = 8;

}  // namespace

DisplayConfig::DisplayConfig() : _slots(new DisplayConfigData[givenSlots + ownSlots]) {}

DisplayConfig::~DisplayConfig() = default;  // destroys the last slot first

DisplayConfig::DisplayConfigData* DisplayConfig::findSlot(std::int64_t id) {
    if (id >= firstGiven && id < firstGiven + givenSlots) return &_slots[static_cast<std::size_t>(id - firstGiven)];
    if (id >= firstOwn && id < firstOwn + ownSlots)
        return &_slots[static_cast<std::size_t>(givenSlots + id - firstOwn)];
    return nullptr;
}

int DisplayConfig::setConfigData(std::int64_t id, void* data, int size) {
    DisplayConfigData::Value value{data, size, std::unique_ptr<char[]>(size != 0 ? static_cast<char*>(data) : nullptr)};
    DisplayConfigData* const slot = findSlot(id);
    if (!slot) return -1;
    slot->setConfigData(*this, id, std::move(value));
    return 0;
}

int DisplayConfig::readConfig(std::int64_t id, float& value) {
    DisplayConfigData* const slot = findSlot(id);
    return slot ? slot->readConfig(*this, value) : -1;
}

void* DisplayConfig::registObserver(std::int64_t id, const Callback& callback, void* userData, unsigned flag) {
    DisplayConfigData* const slot = findSlot(id);
    return slot && callback ? slot->registObserver(*this, id, callback, userData, flag) : nullptr;
}

int DisplayConfig::unRegistObserver(void*& handle) {
    const void* const ended = std::exchange(handle, nullptr);
    for (int i = 0; ended && i < givenSlots + ownSlots; ++i) {
        if (_slots[static_cast<std::size_t>(i)].unRegistObserver(ended)) return 0;
    }
    return -1;
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
    if (sum == 0 || sum > INT_MAX) return -1;
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

std::int64_t DisplayConfigUserData::getConfigId() const {
    return _slot->configId();
}

void* DisplayConfigUserData::getData() const {
    return _slot->value().word;
}

void* DisplayConfigUserData::lastData() const {
    return _slot->lastWord();
}

int DisplayConfigUserData::getState() const {
    return _slot->state();
}

int DisplayConfigUserData::getBlockSize() const {
    return _slot->value().size;
}

std::int32_t DisplayConfigUserData::getInt() const {
    return static_cast<std::int32_t>(bitsOf(getData()));
}

float DisplayConfigUserData::getFloat() const {
    return std::bit_cast<float>(bitsOf(getData()));
}

void DisplayConfigUserData::answer(float value) {
    _slot->answer(wordOf(std::bit_cast<std::uint32_t>(value)));
}

}  // namespace zet
