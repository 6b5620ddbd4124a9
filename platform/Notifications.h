#pragma once

#include <functional>

namespace tarnwick {

enum class PlatformEvent { screenParameters, willSleep, screensDidSleep, didWake, screensDidWake };

// Delivers display-configuration, sleep and wake events on the main thread.
class Notifications {
  public:
    virtual ~Notifications() = default;
    virtual void observe(PlatformEvent event, std::function<void()> handler) = 0;
};

} // namespace tarnwick
