#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Screens.h"

namespace tarnwick::sim {

// The screen list as the platform reports it, in bottom-left coordinates.
// The main screen (where the user works) is taken to be the first one.
class SimScreens : public Screens {
  public:
    explicit SimScreens(SimWorld& world)
        : w_(world) {}

    std::vector<ScreenInfo> screens() override;
    bool isBuiltin(uint32_t displayId) override;
    std::optional<std::vector<uint32_t>> activeDisplayList() override;
    Point mouseLocation() override;
    std::optional<size_t> mainScreen() override;
    BuiltinWords builtinWords() override { return words; }

    // The simulated desktop stands for a notebook of that maker.
    static inline const BuiltinWords words{
        .screen = "MacBook screen", .computer = "MacBook", .yours = "your MacBook"};

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
