#include "platform/sim/SimControl.h"

#include <algorithm>

namespace tarnwick::sim {

void SimControl::addScreen(const Screen& s) {
    for (auto& existing : w_.screens)
        if (existing.id == s.id) {
            existing = s;
            return;
        }
    w_.screens.push_back(s);
}

void SimControl::unplug(uint32_t id) {
    std::erase_if(w_.screens, [id](const Screen& s) { return s.id == id; });
    w_.gatherOffscreenWindows();
}

void SimControl::makePrimary(uint32_t id) {
    auto it = std::find_if(w_.screens.begin(), w_.screens.end(),
                           [id](const Screen& s) { return s.id == id; });
    if (it != w_.screens.end()) std::rotate(w_.screens.begin(), it, it + 1);
}

bool SimControl::hasScreen(uint32_t id) const {
    return std::any_of(w_.screens.begin(), w_.screens.end(),
                       [id](const Screen& s) { return s.id == id; });
}

void SimControl::post(PlatformEvent e) {
    // Handlers may observe further events while they run; those wait for the next post.
    auto [from, to] = w_.observers.equal_range(e);
    std::vector<std::function<void()>> handlers;
    for (auto it = from; it != to; ++it)
        handlers.push_back(it->second);
    for (auto& h : handlers)
        h();
}

void SimControl::addCopy(int32_t pid) {
    w_.endProcess(pid);
    w_.copies.push_back(pid);
}

void SimControl::setOriginal(const std::optional<std::string>& path) {
    w_.original = path;
    if (path) addPath(*path); // the copy the user launched lies there
}

void SimControl::setHome(const std::string& path) {
    w_.home = SimWorld::normalized(path);
    w_.create(w_.home);
}

void SimControl::setWritable(const std::string& folder, bool writable) {
    w_.writable[SimWorld::normalized(folder)] = writable;
    w_.create(folder);
}

void SimControl::addPath(const std::string& path) {
    w_.declared.insert(SimWorld::normalized(path));
    w_.create(path);
}

void SimControl::addApp(App a) {
    w_.endProcess(a.pid);
    std::string icon = a.bundle ? "app:" + *a.bundle : "";
    a.ref = std::make_shared<RunningApp>(RunningApp{a.pid, a.bundle, a.name, a.policy, icon});
    if (a.bundle) w_.installed[*a.bundle] = "/Applications/" + a.name + ".app";
    w_.apps.push_back(std::move(a));
}

bool SimControl::hasApp(int32_t pid) const {
    return std::any_of(w_.apps.begin(), w_.apps.end(), [&](const App& a) { return a.pid == pid; });
}

bool SimControl::hasProcess(int32_t pid) const {
    return hasApp(pid) || std::find(w_.copies.begin(), w_.copies.end(), pid) != w_.copies.end();
}

void SimControl::addWindow(Window w, bool explicitElement, bool explicitNumber) {
    App* a = w_.app(w.pid);
    if (!explicitElement) w.element = a->nextElement;
    a->nextElement = std::max(a->nextElement, w.element + 1);
    if (!explicitNumber) w.number = w_.nextNumber++;
    w.uid = w_.nextUid++;
    w.windowed = w.frame;
    w_.windows.emplace(w.uid, std::move(w));
}

SimControl::Window* SimControl::findWindow(int32_t pid, const std::string& title) {
    for (auto& [uid, w] : w_.windows)
        if (w.pid == pid && w.title == title) return &w_.settle(w);
    return nullptr;
}

void SimControl::moveByHand(Window& w, const Rect& frame) {
    w_.settle(w);
    w.frame = frame;
    if (!w.fullscreen) w.windowed = frame;
}

} // namespace tarnwick::sim
