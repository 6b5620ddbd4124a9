#pragma once

#include "platform/sim/Transcript.h"
#include "setup/SetupModel.h"

#include <optional>

namespace tarnwick::sim {

// A stand-in that records what the setup window was asked, in the readable
// lines the scenarios were first written against, until the real view draws
// on the simulated surfaces.
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
