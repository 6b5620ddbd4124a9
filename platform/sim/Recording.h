#pragma once

#include "displays/Displays.h"
#include "island/Island.h"
#include "platform/sim/Transcript.h"
#include "setup/SetupModel.h"

#include <optional>
#include <vector>

namespace tarnwick::sim {

// Stand-ins that record what the island and the setup window were asked,
// in the readable lines the scenarios were first written against, until the
// real views draw on the simulated surfaces.
class RecordingIsland {
  public:
    explicit RecordingIsland(Transcript& t)
        : t_(t) {}
    void announce(const std::vector<Display>& displays, Link link,
                  const std::vector<Display>& remaining);
    void choose(const Display& target, const std::vector<Display>& connected, double settle);
    void close(Closing how);

  private:
    Transcript& t_;
};

class RecordingSetupWindow {
  public:
    explicit RecordingSetupWindow(Transcript& t)
        : t_(t) {}
    void show(SetupModel::Step start);
    std::optional<SetupModel::Step> step() const { return step_; }

  private:
    Transcript& t_;
    std::optional<SetupModel::Step> step_;
};

} // namespace tarnwick::sim
