#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/LoginItems.h"

namespace tarnwick::sim {

// The login-item service. Not transcribed: the program's own log lines and
// the status it reads back show what it did.
class SimLoginItems : public LoginItems {
  public:
    explicit SimLoginItems(SimWorld& world)
        : w_(world) {}

    bool enabled() override {
        w_.dispatch.requireMain("LoginItems::enabled");
        return w_.loginEnabled;
    }
    std::optional<std::string> registerApp() override { return change(true); }
    std::optional<std::string> unregisterApp() override { return change(false); }

  private:
    std::optional<std::string> change(bool enabled) {
        w_.dispatch.requireMain("LoginItems::registerApp/unregisterApp");
        if (auto error = w_.takeFailure(SimWorld::Operation::login)) return error;
        w_.loginEnabled = enabled;
        return std::nullopt;
    }
    SimWorld& w_;
};

} // namespace tarnwick::sim
