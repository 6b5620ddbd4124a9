#pragma once

#include "displays/Displays.h"
#include "ports/Dispatch.h"
#include "ports/Screens.h"
#include "ports/WindowAccess.h"
#include "prefs/Prefs.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

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

    WindowMover(WindowAccess& windows, Screens& screens, const Prefs& prefs)
        : windows_(windows)
        , screens_(screens)
        , prefs_(prefs) {}

    // The windows of the regular applications with an identifier, neither
    // excluded by the user nor this program's own.
    std::vector<AppWindow> windows();
    // The port the windows listed here are written through.
    WindowAccess& access() { return windows_; }
    MoveResult moveAll(const Display& to, const std::vector<Display>& in, Placement placement,
                       const std::optional<std::vector<AppWindow>>& only,
                       const Progress& progress = {});

    // Where a window of frame `w` on usable area `source` lands on usable area
    // `dest`, before rounding.
    static Rect place(const Rect& w, const Rect& source, const Rect& dest, Placement placement);
    // The frame written for that move: whole points, finite, at least 1 x 1
    // and on `dest`; when the placement gives no such frame the window keeps
    // its size instead, and when that gives none either it is not moved.
    static std::optional<Rect> landing(const Rect& w, const Rect& source, const Rect& dest,
                                       Placement placement);

  private:
    bool moveMaximized(const AppWindow& w, const Display& source, const Display& to,
                       const std::vector<Display>& in, Placement placement);
    bool destinationPresent(uint32_t id);

    WindowAccess& windows_;
    Screens& screens_;
    const Prefs& prefs_;
};

} // namespace tarnwick
