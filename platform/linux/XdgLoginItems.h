#pragma once

#include "ports/LoginItems.h"

#include <string>

namespace tarnwick {

// Opening at login on a freedesktop session: an autostart entry,
// <configHome>/autostart/tarnwick.desktop, which the session starts at login.
class XdgLoginItems : public LoginItems {
  public:
    XdgLoginItems(std::string configHome, std::string execPath);

    bool enabled() override;
    std::optional<std::string> registerApp() override;
    std::optional<std::string> unregisterApp() override;

    const std::string& entryPath() const { return path_; }

  private:
    std::string dir_;
    std::string path_;
    std::string exec_;
};

} // namespace tarnwick
