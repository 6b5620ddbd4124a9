#pragma once

#include <string>

namespace tarnwick {

// The program's own log. Main thread only.
class SystemLog {
  public:
    virtual ~SystemLog() = default;
    // A status text, written as a line of its own.
    virtual void status(const std::string& text) = 0;
    virtual void line(const std::string& text) = 0;
};

} // namespace tarnwick
