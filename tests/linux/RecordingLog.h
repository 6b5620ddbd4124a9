#pragma once

#include "ports/SystemLog.h"

#include <mutex>
#include <string>
#include <vector>

namespace tarnwick::test {

// Keeps what a port logged, so a test can tell a logged failure from a silent one.
class RecordingLog : public SystemLog {
  public:
    void status(const std::string& text) override { line(text); }
    void line(const std::string& text) override {
        std::lock_guard lock(mu_);
        lines_.push_back(text);
    }
    std::vector<std::string> lines() {
        std::lock_guard lock(mu_);
        return lines_;
    }

  private:
    std::mutex mu_;
    std::vector<std::string> lines_;
};

} // namespace tarnwick::test
