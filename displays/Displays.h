#pragma once

#include "base/Geometry.h"
#include "ports/Screens.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

class Prefs;

// One connected screen, in global top-left coordinates (y grows downwards from
// the primary screen's top-left corner), the space window frames are read in.
struct Display {
    uint32_t id = 0;
    std::string name;
    Rect frame;
    Rect visible;
    bool isBuiltin = false;
    bool operator==(const Display&) const = default;
};

using DisplayMap = std::map<uint32_t, Display>;

struct DisplayDiff {
    std::vector<Display> added;
    std::vector<Display> removed;
};

namespace Displays {

// Whether a rectangle can hold a window: finite, with positive width and height.
bool hasArea(const Rect& r);
// The connected screens, primary first, with shared names made unique. A
// screen without area is left out: no real screen has none, and windows
// moved onto one would vanish.
std::vector<Display> all(Screens& screens);
std::vector<Display> disambiguate(const std::vector<Display>& displays);
// Where windows go: the display named in the preferences, else the largest external one.
std::optional<Display> target(const std::vector<Display>& displays, const Prefs& prefs);
std::optional<Display> target(const std::vector<Display>& displays,
                              const std::string& preferredName);
// Names and sizes only: the same monitors rearranged give the same key.
std::string configKey(const std::vector<Display>& displays);
DisplayDiff diff(const DisplayMap& old, const std::vector<Display>& now);
std::optional<Display> containing(const Rect& rect, const std::vector<Display>& displays);
// The display a rectangle is on, else the one closest to it (ties: the
// earliest); nullopt only without displays or for a rectangle that is not finite.
std::optional<Display> nearest(const Rect& rect, const std::vector<Display>& displays);
// Whether the user can still get hold of a window: a third of its title bar
// and a third of its area lie on the displays' usable areas.
bool reachable(const Rect& window, const std::vector<Display>& displays);
// Where an unreachable window goes: fully onto the usable area of the display
// it mostly overlaps (else the nearest), moved no further than it must and
// keeping its size where that fits; nullopt when there is nowhere to put it.
std::optional<Rect> rescued(const Rect& window, const std::vector<Display>& displays);
DisplayMap byId(const std::vector<Display>& displays);
// The screen's size as the surfaces write it: whole points, "2560 × 1440".
std::string sizeText(const Display& display);

} // namespace Displays

} // namespace tarnwick
