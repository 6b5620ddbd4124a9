#pragma once

#include "platform/Geometry.h"

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

class Screens {
  public:
    virtual ~Screens() = default;
    // Primary screen first; may be empty.
    virtual std::vector<ScreenInfo> screens() = 0;
    virtual bool isBuiltin(uint32_t displayId) = 0;
    // The identifiers of the active displays; nullopt when the query fails.
    virtual std::optional<std::vector<uint32_t>> activeDisplayList() = 0;
};

} // namespace tarnwick
