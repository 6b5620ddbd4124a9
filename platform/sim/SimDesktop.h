#pragma once

#include "platform/ax/AXApi.h"
#include "platform/sim/SimControl.h"
#include "platform/sim/SimDispatch.h"
#include "platform/sim/SimWorld.h"
#include "platform/sim/Transcript.h"

#include <memory>

namespace tarnwick {
struct Platform;
class Screens;
class Notifications;
class Defaults;
class LoginItems;
class Trust;
class Audio;
class SystemLog;
class WindowAccess;
class Files;
class Processes;
class Workspace;
class Surfaces;
} // namespace tarnwick

namespace tarnwick::sim {

class SimScreens;
class SimNotifications;
class SimDefaults;
class SimLoginItems;
class SimTrust;
class SimAudio;
class SimSystemLog;
class SimWindowAccess;
class SimFiles;
class SimProcesses;
class SimWorkspace;
class SimSurfaces;

// A faithful, deterministic model of the desktop the core was designed on:
// one world, one object per port over it, and the control a scenario has of
// it (inherited, so that a test builds its world with `desk.addScreen(…)`).
// Everything the program does through the ports is written to the transcript.
//
// The ports are declared, not included, so that a test that only builds a
// world does not see every port's names (the surfaces' `Window` among them).
class SimDesktop : public SimControl {
  public:
    SimDesktop(SimDispatch& dispatch, Transcript& transcript);
    ~SimDesktop();
    SimDesktop(const SimDesktop&) = delete;
    SimDesktop& operator=(const SimDesktop&) = delete;

    Platform platform();
    SimDispatch& dispatch() { return world().dispatch; }
    Transcript& transcript() { return world().transcript; }

    SimScreens& screens();
    SimNotifications& notifications();
    SimDefaults& defaults();
    SimLoginItems& login();
    SimTrust& trust();
    SimAudio& audio();
    SimSystemLog& log();
    SimWindowAccess& windowAccess();
    SimFiles& files();
    SimProcesses& processes();
    SimWorkspace& workspace();
    SimSurfaces& surfaces();

    // The desktop stands for any one of its ports where the core asks for one.
    operator Screens&();
    operator Notifications&();
    operator Defaults&();
    operator LoginItems&();
    operator Trust&();
    operator Audio&();
    operator SystemLog&();
    operator WindowAccess&();
    operator Files&();
    operator Processes&();
    operator Workspace&();
    operator Surfaces&();

    // The accessibility interface called on the desktop itself, for tests that wrap it.
    operator ax::AXApi&();
    std::vector<AppRef> runningApplications();
    std::optional<std::string> ownBundleIdentifier();
    std::optional<std::vector<ax::WindowListEntry>> windowList();
    ax::AXElement createApplication(int32_t pid);
    ax::AXError setMessagingTimeout(const ax::AXElement& element, double seconds);
    ax::AXError copyAttribute(const ax::AXElement& element, const std::string& name,
                              ax::AXAttribute& value);
    ax::AXError setAttribute(const ax::AXElement& element, const std::string& name,
                             const ax::AXAttribute& value);
    bool lookupCreateWithRemoteToken();
    bool lookupGetWindow();
    ax::AXElement createWithRemoteToken(const ax::RemoteToken& token);
    ax::AXError getWindow(const ax::AXElement& element, uint32_t& windowNumber);

  private:
    struct Ports;
    // The world is made first, so that the control and the ports can hold it.
    explicit SimDesktop(std::unique_ptr<SimWorld> world);

    std::unique_ptr<SimWorld> world_;
    std::unique_ptr<Ports> ports_;
};

} // namespace tarnwick::sim
