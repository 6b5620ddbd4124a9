#pragma once

#include "controller/MoveRunner.h"
#include "displays/Displays.h"
#include "island/IslandModel.h"
#include "platform/Platform.h"
#include "prefs/Prefs.h"
#include "windows/WindowMover.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

// Whether an island is about displays that came or displays that went.
enum class Link { connected, disconnected };
// How an island goes: tucked back into the notch first, or at once.
enum class Closing { animated, immediately };

// Opens, drives and closes the single current island. Main thread only.
class Island {
  public:
    struct Parts {
        Platform& platform;
        const Prefs& prefs;
        WindowMover& mover;
        MoveRunner& runner;
        std::vector<std::string> args; // the command line, for "--no-notch"
    };
    explicit Island(Parts parts);

    void announce(const std::vector<Display>& subjects, Link link,
                  const std::vector<Display>& remaining);
    void choose(const Display& target, const std::vector<Display>& connected, double settle);
    void close(Closing how);
    // TODO(island): move, retarget, current model, present.

  private:
    Parts parts_;
};

} // namespace tarnwick
