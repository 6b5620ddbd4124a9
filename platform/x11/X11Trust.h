#pragma once

#include "platform/x11/XConnection.h"
#include "ports/SystemLog.h"
#include "ports/Trust.h"

#include <mutex>
#include <string>

namespace tarnwick::x11 {

// Why other windows cannot be driven here, or "" when they can. Under
// Wayland an X client sees only Xwayland's windows and cannot move them;
// without an EWMH window manager nobody honours our requests.
std::string untrustedReason(const char* sessionType, const char* waylandDisplay,
                            bool windowManagerPresent);

// X11 has no approval to grant: the answer is yes in an X11 session with an
// EWMH window manager and no otherwise.
class X11Trust : public Trust {
  public:
    X11Trust(XConnection& x, SystemLog& log)
        : x_(x)
        , log_(log) {}

    bool isProcessTrusted() override;
    // Approval takes effect at once here.
    bool answers() override { return isProcessTrusted(); }
    void requestWithPrompt() override;

  private:
    bool windowManagerPresent();
    XConnection& x_;
    SystemLog& log_;
    std::mutex mutex_;
    std::string lastReason_ = "-";
};

} // namespace tarnwick::x11
