#pragma once

#include "platform/sim/SimWorld.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick::sim {

// The hand a scenario (or a test) has on the simulated world: it builds and
// changes the world as the world statements describe. Nothing done through
// it is transcribed; only what the program does is.
class SimControl {
  public:
    using Screen = SimWorld::Screen;
    using App = SimWorld::App;
    using Window = SimWorld::Window;
    using Resource = SimWorld::Resource;
    using Operation = SimWorld::Operation;

    explicit SimControl(SimWorld& world)
        : w_(world) {}

    SimWorld& world() { return w_; }
    const SimWorld& world() const { return w_; }

    // Screens and events.
    void addScreen(const Screen& s); // or replaces the screen with that id where it stands
    void unplug(uint32_t id);
    void makePrimary(uint32_t id);
    bool hasScreen(uint32_t id) const;
    void setMouse(const Point& bottomLeft) { w_.mouse = bottomLeft; }
    void post(PlatformEvent e);

    // Trust and the accessibility interface.
    void setTrusted(bool v) { w_.trusted = v; }
    void setProbeAnswers(bool v) { w_.probeAnswers = v; }
    void setPrivateFunctions(bool v) { w_.privateFunctions = v; }

    // This program, its bundle and the files around it.
    void setOwnBundle(const std::string& id) { w_.self = id; }
    void addCopy(int32_t pid);
    void setBundlePath(const std::string& path) { w_.moveBundle(path); }
    void setOriginal(const std::optional<std::string>& path);
    void setHome(const std::string& path);
    void setWritable(const std::string& folder, bool writable);
    void addPath(const std::string& path); // something exists there, with its parent folders
    // The next `op` the program asks for fails with `error`.
    void failNext(Operation op, const std::string& error) { w_.failures[op] = error; }

    // Login items, resources and the defaults database.
    void setLoginEnabled(bool v) { w_.loginEnabled = v; }
    void failNextLogin(const std::string& error) { failNext(Operation::login, error); }
    void setResource(const std::string& name, Resource r) { w_.resources[name] = r; }
    void storeUserDefault(const std::string& key, const DefaultsValue& v) { w_.user[key] = v; }
    void forgetUserDefault(const std::string& key) { w_.user.erase(key); }
    const std::map<std::string, DefaultsValue>& userDefaults() const { return w_.user; }

    // Other applications and their windows.
    void addApp(App app); // a process identifier names one process: it replaces any other
    bool hasApp(int32_t pid) const;
    // An application or another copy of this program.
    bool hasProcess(int32_t pid) const;
    // Adds a window; its element and number default to the next free ones.
    void addWindow(Window w, bool explicitElement, bool explicitNumber);
    Window* findWindow(int32_t pid, const std::string& title);
    void moveByHand(Window& w, const Rect& frame);
    void closeWindow(const Window& w) { w_.windows.erase(w.uid); }
    void quitApp(int32_t pid) { w_.endProcess(pid); }
    Window& settle(Window& w) { return w_.settle(w); }

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
