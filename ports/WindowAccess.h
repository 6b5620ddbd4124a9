#pragma once

#include "base/Geometry.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// What a running application shows the user: windows one switches between
// (regular), only panels, menus or a tray icon (accessory), or nothing at all
// (background).
enum class AppKind { regular, accessory, background };

// A running application; shared so that window records keep it alive.
// Only a regular application with an identifier has its windows moved; the
// identifier is what exclusions and saved layouts are keyed on, so it must
// name the same application across runs (a desktop entry's name on Linux).
struct RunningApp {
    int32_t pid = 0;
    std::optional<std::string> identifier;
    std::optional<std::string> name; // for people, in their language
    AppKind kind = AppKind::regular;
    std::string icon; // a name the views can load; empty for none
};
using AppRef = std::shared_ptr<const RunningApp>;

// A window of another application as its platform knows it. Opaque to the
// core. The last reference may go on any thread, the main one included (the
// island keeps the windows it offers), so releasing one must neither block
// nor need a particular thread.
class WindowHandle {
  public:
    virtual ~WindowHandle() = default;
};
using WindowRef = std::shared_ptr<WindowHandle>;

// A movable window of another application, as it was when listed.
struct AppWindow {
    AppRef app;
    WindowRef ref;
    Rect frame;        // top-left global space: from the primary display's top-left corner, y down
    std::string title; // empty when it has none
    bool fullscreen = false;
    // Answered only by platforms that have the state; elsewhere always false.
    bool maximized = false;
};

// One frame to write, in a batch.
struct Placing {
    WindowRef window;
    Rect frame;
};

// Other applications and their windows. Every call may wait on other
// processes (or on the window manager), so none is made on the main thread;
// calls come from background threads, from two at once when a layout
// snapshot overlaps a move. A window that has gone answers nothing: reads
// give nullopt or false and writes do nothing, never an error the core must
// tell apart. A window handed out by list() may be written and read for as
// long as the core holds it; it need not be listed again first.
class WindowAccess {
  public:
    virtual ~WindowAccess() = default;

    // The identifier this program runs under, so that its own windows are
    // never moved; nullopt when the platform cannot tell.
    virtual std::optional<std::string> ownIdentifier() = 0;
    // The movable windows of the running applications `wanted` accepts, in
    // the platform's order of applications and, within one, of windows.
    // Movable: a normal top-level window (no dialog, panel or desktop), not
    // minimized, with a frame. `wanted` is asked once per application before
    // its windows are read, so that a platform whose reads cost time spends
    // none on the applications the core leaves out. A window whose frame
    // cannot be read is left out; a missing title reads as empty.
    virtual std::vector<AppWindow> list(const std::function<bool(const RunningApp&)>& wanted) = 0;

    // Puts a window at `frame` (top-left global space): the frame with the
    // window manager's decoration, whole points. The window may clamp or
    // refuse it; a full-screen window keeps its frame. Returns once the
    // request is on its way, not once the window got there.
    virtual void place(const WindowRef& window, const Rect& frame) = 0;
    // The same for many windows, in order, for platforms where one call is
    // much cheaper than many.
    virtual void placeAll(const std::vector<Placing>& batch) {
        for (const auto& p : batch)
            place(p.window, p.frame);
    }
    // Asks for full screen on or off and waits until the window reports that
    // state and has finished getting there (about a second at most when it
    // obeys, a few when it does not); false when it did not in time.
    virtual bool setFullscreen(const WindowRef& window, bool on) = 0;
    // Nothing on a platform without the state. Leaving it returns once the
    // window's own frame is back, so that a frame read or written next holds.
    virtual void setMaximized(const WindowRef& window, bool on) = 0;
    // The window's frame now, read from the window itself and not from the
    // last listing; nullopt when it has gone or cannot tell.
    virtual std::optional<Rect> frame(const WindowRef& window) = 0;
};

} // namespace tarnwick
