#pragma once

#include "base/Observable.h"
#include "island/IslandModel.h"
#include "platform/sim/Transcript.h"

#include <memory>
#include <string>

namespace tarnwick::sim {

// Follows the model of a panel on screen and writes what a user sees change
// on it: `island phase …` when the phase becomes another, `island expanded
// yes|no` when it drops out of the notch or tucks back in. The panel keeps
// one while it is shown.
class IslandRecorder {
  public:
    IslandRecorder(Transcript& transcript, std::shared_ptr<IslandModel> model);

  private:
    void record();

    Transcript& t_;
    std::shared_ptr<IslandModel> model_;
    std::string phase_;
    bool expanded_;
    Subscription subscription_;
};

} // namespace tarnwick::sim
