#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/SystemLog.h"

namespace tarnwick::sim {

class SimSystemLog : public SystemLog {
  public:
    explicit SimSystemLog(SimWorld& world)
        : w_(world) {}

    void status(const std::string& text) override {
        w_.dispatch.requireMain("SystemLog::status");
        w_.transcript.line("status", text);
    }
    void line(const std::string& text) override {
        w_.dispatch.requireMain("SystemLog::line");
        w_.transcript.line("log", text);
    }

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
