#pragma once

#include "base/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// One screen as the platform reports it. Rectangles are bottom-left based:
// y grows upwards from the primary screen's bottom-left corner.
struct ScreenInfo {
    std::optional<uint32_t> number; // display identifier; absent when the platform gives none
    std::string name;
    Rect frame;
    Rect visibleFrame;
    double safeAreaTop = 0;               // height of the camera housing, 0 without one
    std::optional<Rect> auxiliaryTopLeft; // the menu-bar areas beside the housing
    std::optional<Rect> auxiliaryTopRight;
};

// How the texts name the computer itself and its own screen: the platform
// knows whether that is a MacBook or some other laptop.
struct BuiltinWords {
    std::string screen = "MacBook screen"; // a destination, a pill label
    std::string computer = "MacBook";      // a compact pill label
    std::string yours = "your MacBook";    // "Windows are back on your MacBook"
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
