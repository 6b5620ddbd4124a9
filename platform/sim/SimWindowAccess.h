#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/WindowAccess.h"

namespace tarnwick::sim {

// Other applications' windows through the accessibility interface and the
// window server's list. A `slow` application answers nothing: each read or
// write on its elements sleeps the element's messaging timeout and fails.
// Frame and full-screen writes are transcribed as they are asked for,
// whether or not the application obeys.
class SimWindowAccess : public WindowAccess {
  public:
    explicit SimWindowAccess(SimWorld& world)
        : w_(world) {}

    std::vector<AppRef> runningApplications() override {
        w_.dispatch.requireBackground("WindowAccess::runningApplications");
        return w_.runningApps();
    }
    std::optional<std::string> ownBundleIdentifier() override {
        w_.dispatch.requireBackground("WindowAccess::ownBundleIdentifier");
        return w_.self;
    }
    std::optional<std::vector<WindowListEntry>> windowList() override;
    AXElement createApplication(int32_t pid) override;
    AXError setMessagingTimeout(const AXElement& element, double seconds) override;
    AXError copyAttribute(const AXElement& element, const std::string& name,
                          AXAttribute& value) override;
    AXError setAttribute(const AXElement& element, const std::string& name,
                         const AXAttribute& value) override;
    bool lookupCreateWithRemoteToken() override {
        w_.dispatch.requireBackground("WindowAccess::lookupCreateWithRemoteToken");
        return w_.privateFunctions;
    }
    bool lookupGetWindow() override {
        w_.dispatch.requireBackground("WindowAccess::lookupGetWindow");
        return w_.privateFunctions;
    }
    AXElement createWithRemoteToken(const RemoteToken& token) override;
    AXError getWindow(const AXElement& element, uint32_t& windowNumber) override;

  private:
    struct Element;
    SimWorld& w_;
};

} // namespace tarnwick::sim
