#include "zet/globalconfiger.h"

namespace zet {

GlobalConfiger::GlobalConfiger() = default;
GlobalConfiger::~GlobalConfiger() = default;

void GlobalConfiger::setFontPath(const std::string& path) {
    const std::lock_guard lock(_mutex);
    _fontPath = path;
}

void GlobalConfiger::setStartTime4WaterMarker(std::int64_t milliseconds) {
    const std::lock_guard lock(_mutex);
    _startTime = milliseconds;
}

void GlobalConfiger::setRectZoom(bool on) {
    _baseData.rectZoom = on ? 1 : 0;
}

void GlobalConfiger::setErrorCallback(const ErrorCallback& callback) {
    const std::lock_guard lock(_mutex);
    _errorCallback = callback;
}

void GlobalConfiger::setPlayer(IZETMediaPlayer* player) {
    const std::lock_guard lock(_mutex);
    _player = player;
}

char* GlobalConfiger::GetFontPath() {
    // A copy for the asking thread: the player may say another path while this one is being read.
    thread_local std::string answer;
    const std::lock_guard lock(_mutex);
    answer = _fontPath;
    return answer.data();  // NOLINT(clang-analyzer-cplusplus.InnerPointer): stays until this thread asks again
}

std::int64_t GlobalConfiger::GetStartTime4WaterMarker() {
    const std::lock_guard lock(_mutex);
    return _startTime;
}

MVConfigerBaseData& GlobalConfiger::GetConfigBaseData() {
    return _baseData;
}

int GlobalConfiger::onErrorCallback(int code, const std::string& error, const std::string& file, int line) {
    ErrorCallback callback;
    {
        const std::lock_guard lock(_mutex);
        callback = _errorCallback;
    }
    if (!callback) return -1;
    callback(code, error, file, line);
    return 0;
}

std::recursive_mutex& GlobalConfiger::getMutex() {
    return _mutex;
}

}  // namespace zet
