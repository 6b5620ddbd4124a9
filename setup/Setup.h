#pragma once

#include "platform/Platform.h"
#include "setup/SetupModel.h"

#include <optional>

namespace tarnwick {

// The first-run actions. TODO(setup).
class Setup {
  public:
    explicit Setup(Platform& platform)
        : platform_(platform) {}
    void takeOverFromOtherCopies();
    std::optional<SetupModel::Step> needs();

  private:
    Platform& platform_;
};

} // namespace tarnwick
