#pragma once

#include "platform/linux/DesktopEntries.h"
#include "platform/linux/SessionBus.h"
#include "platform/x11/X11Windows.h"
#include "ports/Workspace.h"

#include <functional>
#include <string>

namespace tarnwick::x11 {

// Whether the program at `executable` is installed: in /usr/bin,
// /usr/local/bin or ~/.local/bin, or in the bin folder of a prefix whose
// share/applications holds our desktop entry (as `cmake --install --prefix P`
// leaves it). Anywhere else (a build tree, a download) it is not. `exists`
// answers for a file's path.
bool installedAt(const std::string& executable, const std::string& home,
                 const std::function<bool(const std::string&)>& exists);

class X11Workspace : public Workspace {
  public:
    static constexpr const char* identifier = "org.tarnwick.Tarnwick";

    X11Workspace(X11Windows& windows, DesktopEntries& entries, xdg::SessionBus& bus,
                 std::string executable, std::string home)
        : windows_(windows)
        , entries_(entries)
        , bus_(bus)
        , executable_(std::move(executable))
        , home_(std::move(home)) {}

    std::vector<AppRef> runningApplications() override;
    std::optional<std::string> applicationLocation(const std::string& identifier) override;
    std::string icon(const std::string& path) override;
    std::string programPath() override { return executable_; }
    bool installed() override;
    std::optional<std::string> programIdentifier() override { return identifier; }
    std::optional<std::string> version() override { return TARNWICK_VERSION; }
    std::optional<std::string> translocationOriginal(const std::string&) override {
        return std::nullopt;
    }
    // There is no approval page on X11; the setup window's link opens nothing.
    std::optional<std::string> approvalSettingsURL() override { return std::nullopt; }
    // A program on Linux is installed by its package or by CMake, never by
    // copying its executable somewhere.
    std::optional<std::string> installGuide() override;

  private:
    X11Windows& windows_;
    DesktopEntries& entries_;
    xdg::SessionBus& bus_;
    std::string executable_, home_;
};

} // namespace tarnwick::x11
