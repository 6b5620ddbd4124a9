#pragma once

#include "platform/sim/SimDispatch.h"
#include "platform/sim/Transcript.h"
#include "ports/Defaults.h"
#include "ports/Notifications.h"
#include "ports/WindowAccess.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::sim {

// What the simulated desktop is made of: its screens, the other applications
// and their windows, the defaults database, this program's bundle and the
// files around it. The port objects read and change it, the scenario's
// statements set it up. It is plain state: only one thread runs at a time
// under the virtual clock, so it needs no lock.
struct SimWorld {
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
        AppKind policy = AppKind::regular;
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
    // Operations a scenario can make fail once.
    enum class Operation { mkdir, trash, copy, exec, login };

    // This process. Far above the identifiers scenarios give other processes.
    static constexpr int32_t ownPid = 77777;
    static constexpr const char* ownName = "Tarnwick";

    SimWorld(SimDispatch& dispatch, Transcript& transcript);

    SimDispatch& dispatch;
    Transcript& transcript;

    std::vector<Screen> screens; // the platform's order, primary first
    std::optional<Point> mouse;  // bottom-left; nullopt: the first screen's centre
    std::multimap<PlatformEvent, std::function<void()>> observers;

    std::map<std::string, DefaultsValue> registered, user;
    bool loginEnabled = false;
    bool trusted = true;
    bool probeAnswers = true; // whether the accessibility interface answers once trusted
    bool privateFunctions = true;
    std::map<std::string, Resource> resources{{"connect", Resource::present},
                                              {"disconnect", Resource::present}};

    std::deque<App> apps;               // launch order
    std::map<uint64_t, Window> windows; // by uid, which is creation order
    uint64_t nextUid = 1;
    int64_t nextNumber = 100;

    std::string self = "app.tarnwick.Tarnwick"; // this program's bundle identifier
    std::vector<int32_t> copies;                // other running copies of it
    std::string bundlePath = "/Applications/Tarnwick.app";
    std::optional<std::string> original; // the translocation lookup's answer
    std::string home = "/Users/me";
    // Where an application seen running with a bundle identifier is installed.
    std::map<std::string, std::string> installed;

    std::set<std::string> paths;          // everything that exists, parent folders included
    std::set<std::string> declared;       // named by the scenario; outlive a move of the bundle
    std::map<std::string, bool> writable; // per folder, inherited by what lies below
    std::map<Operation, std::string> failures; // the next such operation fails with this

    // Applications and windows.
    App* app(int32_t pid);
    Window* window(uint64_t uid);
    // Every running process with a user interface: the other applications in
    // launch order, then this program, then its other copies.
    std::vector<AppRef> runningApps() const;
    AppRef ownApp(int32_t pid) const;
    // Removes an application or a copy of this program, with its windows.
    bool endProcess(int32_t pid);
    // A window as it is now, with any finished full-screen change applied.
    Window& settle(Window& w);
    Rect topLeft(const Rect& bottomLeft) const;
    std::optional<Rect> screenFrameAt(const Rect& windowFrame) const;
    void gatherOffscreenWindows();

    // Files. Paths are absolute; a trailing slash is ignored.
    static std::string normalized(std::string path);
    static bool isUnder(const std::string& path, const std::string& folder); // or the same
    bool exists(const std::string& path) const;
    void create(const std::string& path); // with its parent folders
    void erase(const std::string& path);  // with everything below it
    bool isWritable(const std::string& path) const;
    void moveBundle(const std::string& path);
    // The pending failure of `op`, used up by this call.
    std::optional<std::string> takeFailure(Operation op);
};

} // namespace tarnwick::sim
