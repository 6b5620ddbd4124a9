#pragma once

#include "platform/linux/DesktopEntries.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/XConnection.h"
#include "ports/Dispatch.h"
#include "ports/SystemLog.h"
#include "ports/WindowAccess.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarnwick::x11 {

// What one read of a client window's properties and geometry tells.
struct WindowFacts {
    xcb_window_t id = 0;
    int32_t pid = 0;
    std::string instance, wmClass; // WM_CLASS, decoded from Latin-1
    std::string title;
    std::string gtkApplicationId, kdeDesktopFile;
    bool normalType = true; // no type at all counts as normal
    bool dialogType = false;
    bool transient = false;
    bool hidden = false, maximized = false, fullscreen = false, skipTaskbar = false;
    uint32_t extents[4] = {0, 0, 0, 0}; // left, right, top, bottom
    Rect client;                        // root space
    Rect frame;                         // root space, with the window manager's decoration
};

// Latin-1 bytes (X11's STRING type) as UTF-8.
std::string latin1ToUtf8(const char* bytes, size_t length);

// Other applications' windows on an EWMH desktop. A listing reads every
// client window's properties in one pipelined batch and keeps them: writes
// to a listed window take its decoration and state from there, while
// frame() and the wait for full screen ask the server again.
//
// Called from any thread. The log is the main thread's: lines written on
// other threads reach it through the dispatch.
class X11Windows : public WindowAccess {
  public:
    X11Windows(std::unique_ptr<XConnection> x, X11Screens& screens, DesktopEntries& entries,
               Dispatch& dispatch, SystemLog& log, int32_t ownPid, std::string ownIdentifier);

    std::optional<std::string> ownIdentifier() override { return ownIdentifier_; }
    std::vector<AppWindow> list(const std::function<bool(const RunningApp&)>& wanted) override;
    void place(const WindowRef& window, const Rect& frame) override;
    void placeAll(const std::vector<Placing>& batch) override;
    // Polls every 0.1 s, at most 50 times, until the window has the state
    // and (on) covers a whole monitor, then lets 0.9 s pass before it is
    // touched again.
    bool setFullscreen(const WindowRef& window, bool on) override;
    void setMaximized(const WindowRef& window, bool on) override;
    std::optional<Rect> frame(const WindowRef& window) override;

    // The applications with windows, without starting a listing (for the
    // settings window's list, on the main thread).
    std::vector<AppRef> applications();
    // Round trips made so far, for the benchmark.
    uint64_t roundTrips() const { return roundTrips_.load(); }

  private:
    struct Snapshot {
        std::vector<WindowFacts> windows; // _NET_CLIENT_LIST order
        std::vector<AppRef> apps;
    };
    Snapshot takeSnapshot();
    std::vector<WindowFacts> fetch(const std::vector<xcb_window_t>& ids);
    std::vector<AppRef> group(const std::vector<WindowFacts>& windows);
    const WindowFacts* factsFor(xcb_window_t id, bool live);
    // `lock` holds mutex_; it is let go while a maximized window is waited for.
    void sendFrame(std::unique_lock<std::mutex>& lock, xcb_window_t id, const Rect& frame);
    void changeState(xcb_window_t id, bool add, xcb_atom_t first, xcb_atom_t second);
    void logQueuedErrors();
    void log(std::string line);
    // Waits (at most 0.3 s) for a window to leave the maximized state and
    // gives the decoration it has then. Other calls go on meanwhile: `lock`
    // is released between the reads.
    void restoredExtents(std::unique_lock<std::mutex>& lock, xcb_window_t id, uint32_t extents[4]);
    // A later write then neither takes the window out of the state again
    // nor sizes it with the maximized decoration.
    void forgetMaximized(xcb_window_t id, const uint32_t extents[4]);

    std::unique_ptr<XConnection> x_;
    X11Screens& screens_;
    DesktopEntries& entries_;
    Dispatch& dispatch_;
    SystemLog& log_;
    int32_t ownPid_;
    std::string ownIdentifier_;
    std::mutex mutex_; // one request batch at a time on the connection, and the cache
    std::unordered_map<xcb_window_t, WindowFacts> facts_;
    std::atomic<uint64_t> roundTrips_ = 0;
};

} // namespace tarnwick::x11
