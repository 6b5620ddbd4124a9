#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Trust.h"

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
    // The accessibility interface refuses (axAPIDisabled) unless it answers.
    bool answers() override {
        w_.dispatch.requireMain("Trust::answers");
        return w_.trusted && w_.probeAnswers;
    }
    void requestWithPrompt() override {
        w_.dispatch.requireMain("Trust::requestWithPrompt");
        w_.transcript.line("trust", "prompt");
    }

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
