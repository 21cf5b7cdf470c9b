#pragma once

#include <functional>
#include <memory>

#include "config/door.h"
#include "zet/globalconfiger.h"

namespace zet::ZETShow {

/// What a view needs of the thread that draws it, and of the player's settings. The display implements it.
class RenderThread {
public:
    RenderThread(const RenderThread&) = delete;
    RenderThread& operator=(const RenderThread&) = delete;

    /// Runs `task` on the render thread and returns when it has run or the thread has ended: the result of `task` if
    /// this is the render thread, otherwise 0. Any thread; off the render thread hold a pass of `door` while in here.
    virtual int postTask(const std::function<int()>& task) = 0;

    /// Keeps this object whole for a thread that is about to post. It outlives the object for whoever shares it: a
    /// closed door is what a late call finds. Any thread.
    const std::shared_ptr<Door>& door() const { return _door; }

    GlobalConfiger* globalConfiger() const { return _globalConfiger; }

protected:
    explicit RenderThread(GlobalConfiger* global) : _globalConfiger(global) {}
    ~RenderThread() = default;

    const std::shared_ptr<Door> _door = std::make_shared<Door>();
    GlobalConfiger* const _globalConfiger;
};

}  // namespace zet::ZETShow
