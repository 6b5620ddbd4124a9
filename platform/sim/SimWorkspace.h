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
    std::optional<std::string> applicationLocation(const std::string& bundleId) override;
    std::string icon(const std::string& path) override {
        w_.dispatch.requireMain("Workspace::icon");
        return "file:" + path;
    }
    std::string bundlePath() override {
        w_.dispatch.requireMain("Workspace::bundlePath");
        return w_.bundlePath;
    }
    std::optional<std::string> bundleIdentifier() override {
        w_.dispatch.requireMain("Workspace::bundleIdentifier");
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
    std::string accessibilitySettingsURL() override {
        w_.dispatch.requireMain("Workspace::accessibilitySettingsURL");
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
