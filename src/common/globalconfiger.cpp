#include "zet/globalconfiger.h"

namespace zet {

struct GlobalConfiger::Settings {
    std::recursive_mutex mutex;  // guards all but the base data
    IZETMediaPlayer* player = nullptr;
    MVConfigerBaseData baseData;
    std::int64_t startTime = 0;
    std::string fontPath;
    ErrorCallback errorCallback;
};

GlobalConfiger::GlobalConfiger() : _settings(std::make_unique<Settings>()) {}
GlobalConfiger::~GlobalConfiger() = default;

void GlobalConfiger::setFontPath(const std::string& path) {
    const std::lock_guard lock(_settings->mutex);
    _settings->fontPath = path;
}

void GlobalConfiger::setStartTime4WaterMarker(std::int64_t milliseconds) {
    const std::lock_guard lock(_settings->mutex);
    _settings->startTime = milliseconds;
}

void GlobalConfiger::setRectZoom(bool on) {
    _settings->baseData.rectZoom = on ? 1 : 0;
}

void GlobalConfiger::setErrorCallback(const ErrorCallback& callback) {
    const std::lock_guard lock(_settings->mutex);
    _settings->errorCallback = callback;
}

void GlobalConfiger::setPlayer(IZETMediaPlayer* player) {
    const std::lock_guard lock(_settings->mutex);
    _settings->player = player;
}

char* GlobalConfiger::GetFontPath() {
    // A copy for the asking thread: the player may set another path while this one is being read.
    thread_local std::string answer;
    const std::lock_guard lock(_settings->mutex);
    answer = _settings->fontPath;
    return answer.data();  // NOLINT(clang-analyzer-cplusplus.InnerPointer): valid until this thread asks again
}

std::int64_t GlobalConfiger::GetStartTime4WaterMarker() {
    const std::lock_guard lock(_settings->mutex);
    return _settings->startTime;
}

MVConfigerBaseData& GlobalConfiger::GetConfigBaseData() {
    return _settings->baseData;
}

int GlobalConfiger::onErrorCallback(int code, const std::string& error, const std::string& file, int line) {
    ErrorCallback callback;
    {
        const std::lock_guard lock(_settings->mutex);
        callback = _settings->errorCallback;
    }
    if (!callback) return -1;
    callback(code, error, file, line);
    return 0;
}

std::recursive_mutex& GlobalConfiger::getMutex() {
    return _settings->mutex;
}

}  // namespace zet
