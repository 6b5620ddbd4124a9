#include "platform/sim/SimDesktop.h"

#include "platform/ax/AXWindows.h"

#include "platform/sim/SimAudio.h"
#include "platform/sim/SimDefaults.h"
#include "platform/sim/SimFiles.h"
#include "platform/sim/SimLoginItems.h"
#include "platform/sim/SimNotifications.h"
#include "platform/sim/SimProcesses.h"
#include "platform/sim/SimScreens.h"
#include "platform/sim/SimSurfaces.h"
#include "platform/sim/SimSystemLog.h"
#include "platform/sim/SimTrust.h"
#include "platform/sim/SimWindowAccess.h"
#include "platform/sim/SimWorkspace.h"
#include "ports/Platform.h"

namespace tarnwick::sim {

struct SimDesktop::Ports {
    explicit Ports(SimWorld& w)
        : screens(w)
        , notifications(w)
        , defaults(w)
        , login(w)
        , trust(w)
        , audio(w)
        , log(w)
        , windows(w)
        , windowPort(windows, w.dispatch)
        , files(w)
        , processes(w)
        , workspace(w)
        , surfaces(w) {}

    SimScreens screens;
    SimNotifications notifications;
    SimDefaults defaults;
    SimLoginItems login;
    SimTrust trust;
    SimAudio audio;
    SimSystemLog log;
    SimWindowAccess windows;
    ax::AXWindows windowPort; // what the core sees of `windows`
    SimFiles files;
    SimProcesses processes;
    SimWorkspace workspace;
    SimSurfaces surfaces;
};

SimDesktop::SimDesktop(SimDispatch& dispatch, Transcript& transcript)
    : SimDesktop(std::make_unique<SimWorld>(dispatch, transcript)) {}

SimDesktop::SimDesktop(std::unique_ptr<SimWorld> world)
    : SimControl(*world)
    , world_(std::move(world))
    , ports_(std::make_unique<Ports>(*world_)) {}

SimDesktop::~SimDesktop() = default;

Platform SimDesktop::platform() {
    auto& p = *ports_;
    return {world_->dispatch, p.screens,   p.notifications, p.defaults,   p.login,
            p.trust,          p.audio,     p.log,           p.windowPort, p.files,
            p.processes,      p.workspace, p.surfaces};
}

SimScreens& SimDesktop::screens() {
    return ports_->screens;
}
SimNotifications& SimDesktop::notifications() {
    return ports_->notifications;
}
SimDefaults& SimDesktop::defaults() {
    return ports_->defaults;
}
SimLoginItems& SimDesktop::login() {
    return ports_->login;
}
SimTrust& SimDesktop::trust() {
    return ports_->trust;
}
SimAudio& SimDesktop::audio() {
    return ports_->audio;
}
SimSystemLog& SimDesktop::log() {
    return ports_->log;
}
SimWindowAccess& SimDesktop::windowAccess() {
    return ports_->windows;
}
SimFiles& SimDesktop::files() {
    return ports_->files;
}
SimProcesses& SimDesktop::processes() {
    return ports_->processes;
}
SimWorkspace& SimDesktop::workspace() {
    return ports_->workspace;
}
SimSurfaces& SimDesktop::surfaces() {
    return ports_->surfaces;
}

SimDesktop::operator Screens&() {
    return ports_->screens;
}
SimDesktop::operator Notifications&() {
    return ports_->notifications;
}
SimDesktop::operator Defaults&() {
    return ports_->defaults;
}
SimDesktop::operator LoginItems&() {
    return ports_->login;
}
SimDesktop::operator Trust&() {
    return ports_->trust;
}
SimDesktop::operator Audio&() {
    return ports_->audio;
}
SimDesktop::operator SystemLog&() {
    return ports_->log;
}
SimDesktop::operator WindowAccess&() {
    return ports_->windowPort;
}
SimDesktop::operator ax::AXApi&() {
    return ports_->windows;
}
SimDesktop::operator Files&() {
    return ports_->files;
}
SimDesktop::operator Processes&() {
    return ports_->processes;
}
SimDesktop::operator Workspace&() {
    return ports_->workspace;
}
SimDesktop::operator Surfaces&() {
    return ports_->surfaces;
}

std::vector<AppRef> SimDesktop::runningApplications() {
    return ports_->windows.runningApplications();
}
std::optional<std::string> SimDesktop::ownBundleIdentifier() {
    return ports_->windows.ownBundleIdentifier();
}
std::optional<std::vector<ax::WindowListEntry>> SimDesktop::windowList() {
    return ports_->windows.windowList();
}
ax::AXElement SimDesktop::createApplication(int32_t pid) {
    return ports_->windows.createApplication(pid);
}
ax::AXError SimDesktop::setMessagingTimeout(const ax::AXElement& element, double seconds) {
    return ports_->windows.setMessagingTimeout(element, seconds);
}
ax::AXError SimDesktop::copyAttribute(const ax::AXElement& element, const std::string& name,
                                      ax::AXAttribute& value) {
    return ports_->windows.copyAttribute(element, name, value);
}
ax::AXError SimDesktop::setAttribute(const ax::AXElement& element, const std::string& name,
                                     const ax::AXAttribute& value) {
    return ports_->windows.setAttribute(element, name, value);
}
bool SimDesktop::lookupCreateWithRemoteToken() {
    return ports_->windows.lookupCreateWithRemoteToken();
}
bool SimDesktop::lookupGetWindow() {
    return ports_->windows.lookupGetWindow();
}
ax::AXElement SimDesktop::createWithRemoteToken(const ax::RemoteToken& token) {
    return ports_->windows.createWithRemoteToken(token);
}
ax::AXError SimDesktop::getWindow(const ax::AXElement& element, uint32_t& windowNumber) {
    return ports_->windows.getWindow(element, windowNumber);
}

} // namespace tarnwick::sim
