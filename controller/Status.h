#pragma once

#include "base/Observable.h"
#include "ports/SystemLog.h"

#include <string>

namespace tarnwick {

// The one-line status the menu and the settings window show. Every text is
// also a line of the system log, so that a user's report can say what
// happened when. Main thread only.
class Status : public Observable {
  public:
    explicit Status(SystemLog& log)
        : log_(log) {}

    const std::string& text() const { return text_; }
    void set(const std::string& text) {
        text_ = text;
        log_.status(text);
        didChange();
    }

  private:
    SystemLog& log_;
    std::string text_ = "Ready";
};

} // namespace tarnwick
