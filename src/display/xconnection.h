#pragma once

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace zet::ZETShow {

/// A connection to the X server that `DISPLAY` names, of the module's own: EGL on it is shared with nobody else in the
/// process. All displays use the same one, as each brings a driver of its own.
class XConnection {
public:
    /// The one in use, or a new one; empty if no server answers. Any thread.
    static std::shared_ptr<XConnection> open();

    XConnection(xcb_connection_t* connection, int screen) : _connection(connection), _screen(screen) {}
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    xcb_connection_t* native() const { return _connection; }
    int screen() const { return _screen; }  ///< the default screen's number

    /// A window's size in pixels; false if there is no such window. Asks the server and waits for it. Any thread.
    bool windowSize(std::uintptr_t window, int& width, int& height) const;
    /// Whether the server is still there, as far as it can be told without asking it. Any thread.
    bool isAlive() const;
    /// The same, after reading what has arrived by now. Any thread.
    bool isAliveNow() const;

private:
    xcb_connection_t* const _connection;
    const int _screen;
};

}  // namespace zet::ZETShow
