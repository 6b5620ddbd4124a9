#pragma once

#include "platform/ax/AXApi.h"
#include "platform/sim/SimWorld.h"

namespace tarnwick::sim {

// Other applications' windows through the accessibility interface and the
// window server's list; the core reaches them through ax::AXWindows. A `slow` application answers
// nothing: each read or write on its elements sleeps the element's messaging timeout and fails.
// Frame and full-screen writes are transcribed as they are asked for,
// whether or not the application obeys.
class SimWindowAccess : public ax::AXApi {
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
    std::optional<std::vector<ax::WindowListEntry>> windowList() override;
    ax::AXElement createApplication(int32_t pid) override;
    ax::AXError setMessagingTimeout(const ax::AXElement& element, double seconds) override;
    ax::AXError copyAttribute(const ax::AXElement& element, const std::string& name,
                              ax::AXAttribute& value) override;
    ax::AXError setAttribute(const ax::AXElement& element, const std::string& name,
                             const ax::AXAttribute& value) override;
    bool lookupCreateWithRemoteToken() override {
        w_.dispatch.requireBackground("WindowAccess::lookupCreateWithRemoteToken");
        return w_.privateFunctions;
    }
    bool lookupGetWindow() override {
        w_.dispatch.requireBackground("WindowAccess::lookupGetWindow");
        return w_.privateFunctions;
    }
    ax::AXElement createWithRemoteToken(const ax::RemoteToken& token) override;
    ax::AXError getWindow(const ax::AXElement& element, uint32_t& windowNumber) override;

  private:
    struct Element;
    SimWorld& w_;
};

} // namespace tarnwick::sim
