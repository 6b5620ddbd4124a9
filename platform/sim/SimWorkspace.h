#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Workspace.h"

namespace tarnwick::sim {

// This program's bundle and the applications the desktop knows of. Icons are
// names: "app:BUNDLE" for a running application, "file:PATH" for a file.
class SimWorkspace : public Workspace {
  public:
    static constexpr const char* shortVersion = "1.0";

    explicit SimWorkspace(SimWorld& world)
        : w_(world) {}

    std::vector<AppRef> runningApplications() override {
        w_.dispatch.requireMain("Workspace::runningApplications");
        return w_.runningApps();
    }
    std::optional<std::string> applicationLocation(const std::string& identifier) override;
    std::string icon(const std::string& path) override {
        w_.dispatch.requireMain("Workspace::icon");
        return "file:" + path;
    }
    std::string programPath() override {
        w_.dispatch.requireMain("Workspace::programPath");
        return w_.bundlePath;
    }
    // A bundle inside one of the Applications folders that the platform has
    // not translocated.
    bool installed() override;
    std::optional<std::string> programIdentifier() override {
        w_.dispatch.requireMain("Workspace::programIdentifier");
        return w_.self;
    }
    std::optional<std::string> version() override {
        w_.dispatch.requireMain("Workspace::version");
        return shortVersion;
    }
    std::optional<std::string> translocationOriginal(const std::string&) override {
        w_.dispatch.requireMain("Workspace::translocationOriginal");
        return w_.original;
    }
    std::optional<std::string> approvalSettingsURL() override {
        w_.dispatch.requireMain("Workspace::approvalSettingsURL");
        return "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
    }
    std::optional<std::string> installGuide() override {
        w_.dispatch.requireMain("Workspace::installGuide");
        return std::nullopt;
    }

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
