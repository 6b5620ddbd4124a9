#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Trust.h"
#include "ports/TrustProbe.h"

namespace tarnwick::sim {

// The approval record, and whether the accessibility interface follows it
// yet: a scenario can leave it refusing a process it already trusts.
class SimTrust : public Trust {
  public:
    explicit SimTrust(SimWorld& world)
        : w_(world) {}

    bool isProcessTrusted() override {
        w_.dispatch.requireMain("Trust::isProcessTrusted");
        return w_.trusted;
    }
    int32_t probe() override {
        w_.dispatch.requireMain("Trust::probe");
        return w_.trusted && w_.probeAnswers ? axSuccess : axAPIDisabled;
    }
    void requestWithPrompt() override {
        w_.dispatch.requireMain("Trust::requestWithPrompt");
        w_.transcript.line("trust", "prompt");
    }

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
