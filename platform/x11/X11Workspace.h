#pragma once

#include "platform/Workspace.h"
#include "platform/x11/DesktopEntries.h"
#include "platform/x11/SessionBus.h"
#include "platform/x11/X11WindowAccess.h"

#include <string>

namespace tarnwick::x11 {

// Where a program installed on Linux stands for one in the Applications
// folder: under /usr, /usr/local or ~/.local. The core's first-run check
// looks for an Applications folder, so an installed program is reported
// there; anywhere else (a build tree) it keeps its real path.
std::string bundlePathFor(const std::string& executable, const std::string& home);

class X11Workspace : public Workspace {
  public:
    static constexpr const char* identifier = "org.tarnwick.Tarnwick";

    X11Workspace(X11WindowAccess& windows, DesktopEntries& entries, SessionBus& bus,
                 std::string executable, std::string home)
        : windows_(windows)
        , entries_(entries)
        , bus_(bus)
        , executable_(std::move(executable))
        , home_(std::move(home)) {}

    std::vector<AppRef> runningApplications() override;
    std::optional<std::string> applicationLocation(const std::string& bundleId) override;
    std::string icon(const std::string& path) override;
    std::string bundlePath() override { return bundlePathFor(executable_, home_); }
    std::optional<std::string> bundleIdentifier() override { return identifier; }
    std::optional<std::string> version() override { return TARNWICK_VERSION; }
    std::optional<std::string> translocationOriginal(const std::string&) override {
        return std::nullopt;
    }
    // There is no approval page on X11; the setup window's link opens nothing.
    std::string accessibilitySettingsURL() override { return ""; }

  private:
    X11WindowAccess& windows_;
    DesktopEntries& entries_;
    SessionBus& bus_;
    std::string executable_, home_;
};

} // namespace tarnwick::x11
