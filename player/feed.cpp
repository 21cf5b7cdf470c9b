#include "feed.h"

namespace zetplay {

double Feed::period() const {
    const double rate = _source.frameRate();
    return rate > 0 ? 1 / rate : 1.0 / 25;
}

bool Feed::fetch() {
    if (_waiting) return true;
    if (_stillShown && (repeatStill || loop)) {
        _due += period();
        return _waiting = true;
    }
    bool read = _source.next(_picture);
    if (!read && loop && _read > 0 && !_source.still()) {
        _source.rewind();
        _start = _due + period();
        read = _source.next(_picture);
    }
    if (!read) return false;
    ++_read;
    _due = _start + _picture.seconds;
    return _waiting = true;
}

void Feed::show() {
    if (_stillShown) {
        _driver.setFrameAgain(_annotations);
    } else {
        _driver.setFrame(_picture, _annotations);
    }
    _stillShown = _source.still();
    _waiting = false;
    ++_shown;
    ++_set;
}

void Feed::drop() {
    _waiting = false;
}

void Feed::showAgain() {
    if (_shown == 0) return;
    _driver.setFrameAgain(_annotations);
    ++_set;
}

void Feed::setFaces(const std::vector<zet::FaceItem>& faces) {
    _annotations.faces = faces;
    _annotations.rects.clear();
}

void Feed::setRects(const std::vector<zet::RectItem>& rects) {
    _annotations.rects = rects;
    _annotations.faces.clear();
}

}  // namespace zetplay
