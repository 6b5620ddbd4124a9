#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Audio.h"

namespace tarnwick::sim {

// The chimes in the bundle's resources. A present one plays as a `sound`
// line; a broken one lies there but does not load.
class SimAudio : public Audio {
  public:
    explicit SimAudio(SimWorld& world)
        : w_(world) {}

    std::optional<std::string> resource(const std::string& name,
                                        const std::string& extension) override;
    std::shared_ptr<AudioClip> load(const std::string& location) override;

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
