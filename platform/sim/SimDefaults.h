#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Defaults.h"

namespace tarnwick::sim {

// The defaults database: a user domain over a registration domain. Every
// write and removal of the program is transcribed; registering is not, as
// it stores nothing.
class SimDefaults : public Defaults {
  public:
    explicit SimDefaults(SimWorld& world)
        : w_(world) {}

    void registerDefaults(const std::map<std::string, DefaultsValue>& values) override;
    std::optional<DefaultsValue> object(const std::string& key) override;
    void set(const std::string& key, const DefaultsValue& value) override;
    void remove(const std::string& key) override;

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
