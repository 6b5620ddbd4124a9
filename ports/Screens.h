#pragma once

#include "base/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// One screen as the platform reports it. Rectangles are bottom-left based:
// y grows upwards from the primary screen's bottom-left corner. A platform
// whose own space runs top-down (X11, Wayland compositors) flips its
// rectangles against the primary's bottom edge; the core's arithmetic
// depends on this space, so it stays as it is for now.
//
// `number` is the core's identifier for a display. Platforms that know a
// display by something else (a RandR output, an output name such as KWin's
// "DP-2") keep their own mapping from that native identity to a number, and
// it must be stable: the same display keeps its number for as long as the
// process runs, unplugged and plugged in again included, and two displays
// connected at once never share one. The number is not written to disk (a
// setup's key is made of names and sizes), so it need not survive a restart.
// Surfaces name screens by it too.
struct ScreenInfo {
    std::optional<uint32_t> number; // display identifier; absent when the platform gives none
    std::string name;
    Rect frame;
    Rect visibleFrame;
    // A camera housing cut into the top edge: its height (0 without one) and
    // the strips of the top bar left and right of it. Platforms without one
    // leave them empty.
    double safeAreaTop = 0;
    std::optional<Rect> auxiliaryTopLeft;
    std::optional<Rect> auxiliaryTopRight;
};

// How the texts name the computer itself and its own screen. Each platform
// gives its own words ("Laptop screen" on a PC laptop): the core has no
// default, since any would be one maker's name for its machines.
struct BuiltinWords {
    std::string screen;   // a destination, a pill label
    std::string computer; // a compact pill label
    std::string yours;    // "Windows are back on your laptop"
};

// The connected screens. screens(), isBuiltin(), activeDisplayList() and
// builtinWords() are called from any thread, from several at once: the
// coordinator reads the screens on the main thread while a move or a layout
// snapshot reads them in the background, and a move asks for the active
// list before every window it moves, so it must not be slow.
class Screens {
  public:
    virtual ~Screens() = default;
    // Primary screen first; may be empty. A screen without a number is never
    // a display windows move to or a layout is kept for.
    virtual std::vector<ScreenInfo> screens() = 0;
    virtual bool isBuiltin(uint32_t displayId) = 0;
    // The identifiers of the active displays; nullopt when the query fails.
    // A move stops when its destination is missing from it.
    virtual std::optional<std::vector<uint32_t>> activeDisplayList() = 0;
    // Main thread only: where the pointer is (bottom-left coordinates), and
    // the index in screens() of the screen the user works on, if any.
    virtual Point mouseLocation() = 0;
    virtual std::optional<size_t> mainScreen() = 0;
    virtual BuiltinWords builtinWords() = 0;
};

} // namespace tarnwick
