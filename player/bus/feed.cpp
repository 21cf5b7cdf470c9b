#include "bus/feed.h"

#include <utility>

namespace zetplay {

double Feed::period() const {
    const double rate = _source.frameRate();
    return rate > 0 ? 1 / rate : 1.0 / 25;
}

bool Feed::fetch() {
    if (_waiting) return true;
    if (_failure) std::rethrow_exception(_failure);
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
    if (!_stillShown) _last = std::move(_picture);
    _stillShown = _source.still();
    _waiting = false;
    set();
    ++_shown;
}

void Feed::drop() {
    _waiting = false;
}

bool Feed::skip() {
    Picture kept = std::exchange(_picture, {});
    const double due = _due;
    _waiting = false;
    try {
        if (fetch()) return true;
    } catch (const Failure&) {
        _failure = std::current_exception();
    }
    _picture = std::move(kept);
    _due = due;
    _waiting = true;
    return false;
}

void Feed::showAgain() {
    if (_shown > 0) set();
}

void Feed::set() {
    Picture picture = _last;
    if (_color) picture.color = *_color;
    _driver.setFrame(picture, annotations());
    ++_set;
}

void Feed::setLens(const std::optional<LensRegion>& lens) {
    _own.lens = lens;
    _ownLens = true;
}

void Feed::setFaces(const std::vector<zet::FaceItem>& faces) {
    _own.faces = faces;
    _own.rects.clear();
    _ownItems = true;
}

void Feed::setRects(const std::vector<zet::RectItem>& rects) {
    _own.rects = rects;
    _own.faces.clear();
    _ownItems = true;
}

Annotations Feed::annotations() const {
    Annotations annotations = _metadata.of(_last.number);
    if (_ownLens) annotations.lens = _own.lens;
    if (_ownItems) {
        annotations.faces = _own.faces;
        annotations.rects = _own.rects;
    }
    return annotations;
}

}  // namespace zetplay
