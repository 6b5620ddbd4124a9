#pragma once

#include "ports/SystemLog.h"

#include <mutex>
#include <string>

namespace tarnwick::xdg {

// The program's log on standard error, one line per entry:
//   2026-11-23T14:05:09.123Z tarnwick[4242]: status: Moved 3 windows to DELL U2720Q
// Status texts carry "status: " so that they can be told from other lines.
// Any thread; a line is written with one call, so lines never interleave.
class StderrLog : public SystemLog {
  public:
    void status(const std::string& text) override { write("status: " + text); }
    void line(const std::string& text) override { write(text); }

  private:
    void write(const std::string& text);
    std::mutex mutex_;
};

} // namespace tarnwick::xdg
