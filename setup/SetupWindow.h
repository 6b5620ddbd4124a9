#pragma once

#include "platform/Platform.h"
#include "setup/Setup.h"
#include "setup/SetupModel.h"

#include <functional>
#include <memory>

namespace tarnwick {

// The first-run window and the model behind it. TODO(setup).
class SetupWindow {
  public:
    SetupWindow(Platform& platform, Setup& setup, std::function<void()> showSettings)
        : platform_(platform)
        , setup_(setup)
        , showSettings_(std::move(showSettings)) {}
    void show(SetupModel::Step start);

  private:
    Platform& platform_;
    Setup& setup_;
    std::function<void()> showSettings_;
};

} // namespace tarnwick
