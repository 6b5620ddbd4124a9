#pragma once

#include "displays/Displays.h"
#include "ports/Dispatch.h"
#include "ports/Screens.h"
#include "ports/WindowAccess.h"
#include "prefs/Prefs.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// A movable window of another application, as it was when listed.
struct AXWindow {
    AppRef app;
    AXElement el;
    Rect frame; // top-left global coordinates, as the accessibility interface gives it
    std::string title;
    bool fullscreen = false;
    // Answered only by platforms that have the state; elsewhere always false.
    bool maximized = false;
};

// Lists other applications' windows and moves them between displays. Every
// call blocks on other processes, so none is made on the main thread.
class WindowMover {
  public:
    struct MoveResult {
        int64_t moved = 0;
        int64_t leftWindowed = 0; // taken out of full screen and not put back
        bool targetLost = false;
        std::string summary(const std::string& to) const;
    };
    using Progress = std::function<void(int64_t done, int64_t total, const std::string& app)>;

    static constexpr double messagingTimeout = 0.5;
    static constexpr int scanLimit = 4000;

    WindowMover(WindowAccess& ax, Screens& screens, Dispatch& dispatch, const Prefs& prefs)
        : ax_(ax)
        , screens_(screens)
        , dispatch_(dispatch)
        , prefs_(prefs) {}

    std::vector<AXWindow> windows();
    MoveResult moveAll(const Display& to, const std::vector<Display>& in, Placement placement,
                       const std::optional<std::vector<AXWindow>>& only,
                       const Progress& progress = {});

    template <typename T> std::optional<T> attr(const AXElement& el, const std::string& name);
    std::optional<AXValue> axValue(const AXElement& el, const std::string& name);
    void setFrame(const AXElement& el, const Rect& frame);
    // Blocks until the window reports the requested state, for at most 50 polls.
    bool setFullscreen(const AXElement& el, bool on);
    // Nothing on platforms without the state. Leaving it waits until the
    // window's own frame is back, so that a frame written next holds.
    void setMaximized(const AXElement& el, bool on);

    // Where a window of frame `w` on usable area `source` lands on usable area
    // `dest`, before rounding.
    static Rect place(const Rect& w, const Rect& source, const Rect& dest, Placement placement);
    // The frame written for that move: whole points, finite, at least 1 x 1
    // and on `dest`; when the placement gives no such frame the window keeps
    // its size instead, and when that gives none either it is not moved.
    static std::optional<Rect> landing(const Rect& w, const Rect& source, const Rect& dest,
                                       Placement placement);
    static RemoteToken remoteToken(int32_t pid, uint64_t elementId);

  private:
    AXElement axElement(int32_t pid, uint64_t elementId);
    std::vector<AXElement> scan(int32_t pid, const std::vector<WindowListEntry>& list);
    std::optional<Rect> readFrame(const AXElement& el);
    bool moveMaximized(const AXWindow& w, const Display& source, const Display& to,
                       const std::vector<Display>& in, Placement placement);
    bool destinationPresent(uint32_t id);
    void resolvePrivate();

    WindowAccess& ax_;
    Screens& screens_;
    Dispatch& dispatch_;
    const Prefs& prefs_;
    std::once_flag resolved_;
    bool createWithRemoteToken_ = false;
    bool getWindowID_ = false;
};

template <>
std::optional<std::string> WindowMover::attr(const AXElement& el, const std::string& name);
template <> std::optional<bool> WindowMover::attr(const AXElement& el, const std::string& name);

} // namespace tarnwick
