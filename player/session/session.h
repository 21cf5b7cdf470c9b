#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "bus/driver.h"
#include "bus/feed.h"
#include "media/source.h"
#include "record/videowriter.h"
#include "session/options.h"
#include "window/window.h"

namespace zetplay {

/// The parts of one run and what is done with several of them at once.
class Session {
public:
    /// Opens the input, then the window, then the display. Throws `Failure`.
    explicit Session(const Options& options);
    ~Session();

    // In the order of construction; destroyed in reverse.

    const Options& options;
    const std::unique_ptr<Source> source;

private:
    std::optional<VideoSystem> _video;  // none where no screen is needed

public:
    std::unique_ptr<Window> window;
    Driver driver;
    Feed feed;
    std::unique_ptr<VideoWriter> recording;

    int view() const { return _view; }
    /// Sets any number as the view, unchecked.
    void setView(int view);
    /// Sets the waiting picture, returns when it is drawn, and records the window if that was asked for.
    void drawNext();
    /// Gives the module the window that there is, as if it were another one.
    void showWindow();
    /// Puts a fresh window in the place of the present one.
    void renewWindow();
    void resize(int width, int height);
    /// Takes an upright snapshot, with the timestamp if there is one, in a buffer that is large enough.
    std::optional<Snapshot> snap(bool sourceFrame);
    /// Bytes that hold any snapshot.
    int snapBytes() const;

    /// The user ends the run: Ctrl-C, or the window was closed.
    bool closing() const;
    /// The run is to end: by the user, or because `--frames` is reached.
    bool stopped() const;
    void quit() { _quit = true; }
    /// Takes what has come from the window system; only its wish to close the window counts.
    void drainEvents();

private:
    std::unique_ptr<Window> makeWindow(int width, int height) const;
    bool savesPictures() const;
    void startRecording();
    void retitle();

    int _view;
    std::atomic<bool> _quit = false;
};

}  // namespace zetplay
