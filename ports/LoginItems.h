#pragma once

#include <optional>
#include <string>

namespace tarnwick {

// The service that opens the application at login. Main thread only.
class LoginItems {
  public:
    virtual ~LoginItems() = default;
    virtual bool enabled() = 0;
    // Each returns the error's description when the service refuses.
    virtual std::optional<std::string> registerApp() = 0;
    virtual std::optional<std::string> unregisterApp() = 0;
};

} // namespace tarnwick
