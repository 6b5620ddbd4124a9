#pragma once

#include <functional>

namespace tarnwick {

// The displays were plugged, unplugged, rearranged or resized; the computer
// is going to sleep or woke up; its screens went dark or came back on.
enum class PlatformEvent { displaysChanged, goingToSleep, screensOff, wokeUp, screensOn };

// Delivers display-configuration, sleep and wake events on the main thread.
// A change may be reported more than once: the coordinator waits for the
// screens to settle before it acts.
class Notifications {
  public:
    virtual ~Notifications() = default;
    // Main thread only, at start-up; the handler stays for the life of the process.
    virtual void observe(PlatformEvent event, std::function<void()> handler) = 0;
};

} // namespace tarnwick
