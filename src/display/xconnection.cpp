#include "display/xconnection.h"

#include <mutex>

#ifdef ZET_HAS_XCB
#include <xcb/xcb.h>

#include <cstdlib>
#endif

namespace zet::ZETShow {

#ifdef ZET_HAS_XCB

namespace {

struct Free {
    void operator()(void* answer) const { std::free(answer); }
};

}  // namespace

std::shared_ptr<XConnection> XConnection::open() {
    static std::mutex mutex;
    static std::weak_ptr<XConnection> inUse;
    const std::lock_guard lock(mutex);
    auto shared = inUse.lock();
    if (shared && shared->isAliveNow()) return shared;
    int screen = 0;
    xcb_connection_t* const connection = xcb_connect(nullptr, &screen);
    shared = std::make_shared<XConnection>(connection, screen);
    if (!shared->isAlive()) return nullptr;
    inUse = shared;
    return shared;
}

XConnection::~XConnection() {
    xcb_disconnect(_connection);
}

bool XConnection::windowSize(std::uintptr_t window, int& width, int& height) const {
    if (window > UINT32_MAX) return false;  // an identifier of the X protocol has 32 bits
    const auto question = xcb_get_geometry(_connection, static_cast<xcb_drawable_t>(window));
    xcb_generic_error_t* error = nullptr;
    const std::unique_ptr<xcb_get_geometry_reply_t, Free> answer(xcb_get_geometry_reply(_connection, question, &error));
    std::free(error);
    if (!answer) return false;
    width = answer->width;
    height = answer->height;
    return true;
}

bool XConnection::isAlive() const {
    return xcb_connection_has_error(_connection) == 0;
}

bool XConnection::isAliveNow() const {
    // Nothing is subscribed to: what comes is errors of windows that have gone.
    for (xcb_generic_event_t* event = nullptr; (event = xcb_poll_for_event(_connection));) std::free(event);
    return isAlive();
}

#else

std::shared_ptr<XConnection> XConnection::open() {
    return nullptr;
}
XConnection::~XConnection() = default;
bool XConnection::windowSize(std::uintptr_t, int&, int&) const {
    return false;
}
bool XConnection::isAlive() const {
    return false;
}
bool XConnection::isAliveNow() const {
    return false;
}

#endif

}  // namespace zet::ZETShow
