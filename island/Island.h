#pragma once

#include "displays/Displays.h"

#include <vector>

namespace tarnwick {

// The panel that hangs from the top of the screen: announces connects and
// disconnects and lets the user choose which windows move.
class Island {
  public:
    virtual ~Island() = default;
    virtual void announce(const std::vector<Display>& displays, bool connected,
                          const std::vector<Display>& remaining) = 0;
    virtual void choose(const Display& target, const std::vector<Display>& connected,
                        double settle) = 0;
    virtual void close(bool animated) = 0;
};

} // namespace tarnwick
