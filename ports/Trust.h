#pragma once

namespace tarnwick {

// Whether the user approved this program to drive other applications'
// windows. Main thread only; asked often (the settings window re-reads it
// every 2 s, the first-run window every second), so it must be cheap. Neither
// question fails: a platform that cannot tell answers no.
class Trust {
  public:
    virtual ~Trust() = default;
    // What the platform's approval record says; may say yes before the
    // running process really benefits from it.
    virtual bool isProcessTrusted() = 0;
    // Whether the window interface answers this process now: asked something
    // harmless, it did not refuse. Where approval takes effect at once this
    // is isProcessTrusted() again; where a process approved while it runs
    // is refused until it starts anew, this tells the two apart.
    virtual bool answers() = 0;
    // Asks the platform to show its own approval prompt; the answer arrives
    // later through isProcessTrusted().
    virtual void requestWithPrompt() = 0;
};

} // namespace tarnwick
