#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Notifications.h"

namespace tarnwick::sim {

// Handlers are kept in the world, which delivers the events a scenario posts.
class SimNotifications : public Notifications {
  public:
    explicit SimNotifications(SimWorld& world)
        : w_(world) {}

    void observe(PlatformEvent event, std::function<void()> handler) override {
        w_.dispatch.requireMain("Notifications::observe");
        w_.observers.emplace(event, std::move(handler));
    }

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
