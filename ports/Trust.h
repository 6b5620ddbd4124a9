#pragma once

#include <cstdint>

namespace tarnwick {

// Whether the user approved this program to drive other applications'
// windows. Main thread only; asked often (the settings window re-reads it
// every 2 s, the first-run window every second), so it must be cheap.
class Trust {
  public:
    virtual ~Trust() = default;
    // What the platform's approval record says; may say yes before the
    // running process really benefits from it.
    virtual bool isProcessTrusted() = 0;
    // Asks the accessibility interface something harmless (the focused
    // application of the system-wide element) and returns its error code:
    // axAPIDisabled while the interface still refuses this process; any other
    // code, success or not, tells the core the interface answers.
    virtual int32_t probe() = 0;
    // Asks the platform to show its own approval prompt; the answer arrives
    // later through isProcessTrusted().
    virtual void requestWithPrompt() = 0;
};

} // namespace tarnwick
