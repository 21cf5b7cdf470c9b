#include "zet/displayconfigkit.h"

namespace zet {

DisplayConfigKit::DisplayConfigKit(DisplayConfig* config) : _config(config) {}

DisplayConfigKit::DisplayConfigKit(const DisplayConfigKit& other) = default;

DisplayConfigKit& DisplayConfigKit::operator=(const DisplayConfigKit& other) = default;

DisplayConfigKit::~DisplayConfigKit() {
    unRegistAll();
}

int DisplayConfigKit::regist(std::int64_t id, const DisplayConfig::Callback& callback, unsigned flag) {
    _handles.push_back(_config->registObserver(id, callback, nullptr, flag));
    return 0;
}

int DisplayConfigKit::unRegistAll() {
    for (void* handle : _handles) _config->unRegistObserver(handle);
    _handles.clear();
    return 0;
}

}  // namespace zet
