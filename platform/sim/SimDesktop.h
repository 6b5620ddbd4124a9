#pragma once

#include "island/Island.h"
#include "platform/Platform.h"
#include "platform/sim/SimDispatch.h"
#include "platform/sim/Transcript.h"
#include "setup/SetupWindow.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::sim {

// A faithful, deterministic model of the desktop the core was designed on:
// bottom-left screen rectangles, a defaults database with a registration
// domain, accessibility elements with messaging timeouts, the window server's
// list and the two optional private functions. Every port is implemented here
// and everything the program does to it is written to the transcript.
class SimDesktop : public Screens,
                   public Notifications,
                   public Defaults,
                   public LoginItems,
                   public Trust,
                   public Audio,
                   public SystemLog,
                   public WindowAccess {
  public:
    struct Screen {
        uint32_t id = 0;
        std::string name;
        Rect frame, visible; // bottom-left
        bool builtin = false;
        std::optional<Size> notch;
        bool noid = false;
    };
    struct App {
        int32_t pid = 0;
        std::string name;
        std::optional<std::string> bundle;
        ActivationPolicy policy = ActivationPolicy::regular;
        bool slow = false;
        AppRef ref;
        uint64_t nextElement = 1;
    };
    struct Window {
        uint64_t uid = 0;
        int32_t pid = 0;
        std::string title;
        Rect frame;    // top-left
        Rect windowed; // where the window returns when it leaves full screen
        bool fullscreen = false;
        bool minimized = false;
        std::optional<std::string> subrole = std::string("AXStandardWindow");
        bool notitle = false;
        uint64_t element = 0;
        int64_t number = 0;
        int64_t layer = 0;
        std::optional<Size> listed;
        bool unlisted = false;
        std::optional<double> enter = 0.3, leave = 0.3; // nullopt: never
        // A full-screen change under way: the state it reaches, and when.
        std::optional<bool> pendingState;
        int64_t pendingAt = 0;
    };
    enum class Resource { present, missing, broken };

    SimDesktop(SimDispatch& dispatch, Transcript& transcript);

    Platform platform();
    SimDispatch& dispatch() { return dispatch_; }
    Transcript& transcript() { return transcript_; }

    // The world, as scenarios change it.
    void addScreen(const Screen& s);
    void unplug(uint32_t id);
    void makePrimary(uint32_t id);
    bool hasScreen(uint32_t id) const;
    void post(PlatformEvent e);
    void setTrusted(bool v) { trusted_ = v; }
    void setPrivateFunctions(bool v) { private_ = v; }
    void setOwnBundle(const std::string& id) { ownBundle_ = id; }
    void setResource(const std::string& name, Resource r) { resources_[name] = r; }
    void setLoginEnabled(bool v) { loginEnabled_ = v; }
    void failNextLogin(const std::string& error) { loginFailure_ = error; }
    void storeUserDefault(const std::string& key, const DefaultsValue& v) { user_[key] = v; }
    void forgetUserDefault(const std::string& key) { user_.erase(key); }
    const std::map<std::string, DefaultsValue>& userDefaults() const { return user_; }
    void addApp(App app);
    bool hasApp(int32_t pid) const;
    // Adds a window; its element and number default to the next free ones.
    void addWindow(Window w, bool explicitElement, bool explicitNumber);
    Window* findWindow(int32_t pid, const std::string& title);
    void moveByHand(Window& w, const Rect& frame);
    void closeWindow(const Window& w);
    void quitApp(int32_t pid);
    // A window as it is now, with any finished full-screen change applied.
    Window& settle(Window& w);

    static std::string formatDefaultsValue(const DefaultsValue& v);
    static std::string rect(const Rect& r);

    // Screens
    std::vector<ScreenInfo> screens() override;
    bool isBuiltin(uint32_t displayId) override;
    std::optional<std::vector<uint32_t>> activeDisplayList() override;
    // Notifications
    void observe(PlatformEvent event, std::function<void()> handler) override;
    // Defaults
    void registerDefaults(const std::map<std::string, DefaultsValue>& values) override;
    std::optional<DefaultsValue> object(const std::string& key) override;
    void set(const std::string& key, const DefaultsValue& value) override;
    void remove(const std::string& key) override;
    // LoginItems
    bool enabled() override { return loginEnabled_; }
    std::optional<std::string> registerApp() override;
    std::optional<std::string> unregisterApp() override;
    // Trust
    bool isProcessTrusted() override { return trusted_; }
    // Audio
    std::optional<std::string> resource(const std::string& name,
                                        const std::string& extension) override;
    std::shared_ptr<AudioClip> load(const std::string& location) override;
    // SystemLog
    void status(const std::string& text) override { transcript_.line("status", text); }
    void line(const std::string& text) override { transcript_.line("log", text); }
    // WindowAccess
    std::vector<AppRef> runningApplications() override;
    std::optional<std::string> ownBundleIdentifier() override { return ownBundle_; }
    std::optional<std::vector<WindowListEntry>> windowList() override;
    AXElement createApplication(int32_t pid) override;
    AXError setMessagingTimeout(const AXElement& element, double seconds) override;
    AXError copyAttribute(const AXElement& element, const std::string& name,
                          AXAttribute& value) override;
    AXError setAttribute(const AXElement& element, const std::string& name,
                         const AXAttribute& value) override;
    bool lookupCreateWithRemoteToken() override { return private_; }
    bool lookupGetWindow() override { return private_; }
    AXElement createWithRemoteToken(const RemoteToken& token) override;
    AXError getWindow(const AXElement& element, uint32_t& windowNumber) override;

  private:
    struct Element;
    App* app(int32_t pid);
    Window* window(uint64_t uid);
    Rect topLeft(const Rect& bottomLeft) const;
    std::optional<Rect> screenFrameAt(const Rect& windowFrame) const;
    void gatherOffscreenWindows();
    std::string windowRef(const Window& w) const;

    SimDispatch& dispatch_;
    Transcript& transcript_;
    std::vector<Screen> screens_;
    std::multimap<PlatformEvent, std::function<void()>> observers_;
    std::map<std::string, DefaultsValue> registered_, user_;
    bool trusted_ = true;
    bool private_ = true;
    std::string ownBundle_ = "app.tarnwick.Tarnwick";
    std::string bundlePath_ = "/Applications/Tarnwick.app";
    std::map<std::string, Resource> resources_{{"connect", Resource::present},
                                               {"disconnect", Resource::present}};
    bool loginEnabled_ = false;
    std::optional<std::string> loginFailure_;
    std::deque<App> apps_;               // launch order
    std::map<uint64_t, Window> windows_; // by uid, which is creation order
    uint64_t nextUid_ = 1;
    int64_t nextNumber_ = 100;
};

// Until the island and the setup window have views of their own, the sim
// records what they were asked.
class RecordingIsland : public Island {
  public:
    explicit RecordingIsland(Transcript& t)
        : t_(t) {}
    void announce(const std::vector<Display>& displays, bool connected,
                  const std::vector<Display>& remaining) override;
    void choose(const Display& target, const std::vector<Display>& connected,
                double settle) override;
    void close(bool animated) override;

  private:
    Transcript& t_;
};

class RecordingSetupWindow : public SetupWindow {
  public:
    explicit RecordingSetupWindow(Transcript& t)
        : t_(t) {}
    void show(SetupStep start) override;
    std::optional<SetupStep> step() const { return step_; }

  private:
    Transcript& t_;
    std::optional<SetupStep> step_;
};

} // namespace tarnwick::sim
