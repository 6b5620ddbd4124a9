#include "platform/sim/SimWorld.h"

#include <algorithm>

namespace tarnwick::sim {

namespace {

std::string appIcon(const std::optional<std::string>& bundle) {
    return bundle ? "app:" + *bundle : std::string();
}

} // namespace

SimWorld::SimWorld(SimDispatch& d, Transcript& t)
    : dispatch(d)
    , transcript(t) {
    create("/Applications");
    create(home);
    create(bundlePath);
}

// --- applications and windows

SimWorld::App* SimWorld::app(int32_t pid) {
    for (auto& a : apps)
        if (a.pid == pid) return &a;
    return nullptr;
}

SimWorld::Window* SimWorld::window(uint64_t uid) {
    auto it = windows.find(uid);
    return it == windows.end() ? nullptr : &it->second;
}

AppRef SimWorld::ownApp(int32_t pid) const {
    // A menu-bar program: no Dock icon, so the accessory policy.
    return std::make_shared<RunningApp>(
        RunningApp{pid, self, ownName, AppKind::accessory, appIcon(self)});
}

std::vector<AppRef> SimWorld::runningApps() const {
    std::vector<AppRef> out;
    for (const auto& a : apps)
        out.push_back(a.ref);
    out.push_back(ownApp(ownPid));
    for (int32_t pid : copies)
        out.push_back(ownApp(pid));
    return out;
}

bool SimWorld::endProcess(int32_t pid) {
    const auto before = apps.size() + copies.size();
    std::erase_if(windows, [pid](const auto& entry) { return entry.second.pid == pid; });
    std::erase_if(apps, [pid](const App& a) { return a.pid == pid; });
    std::erase(copies, pid);
    return apps.size() + copies.size() != before;
}

SimWorld::Window& SimWorld::settle(Window& w) {
    if (w.pendingState && dispatch.nowMicros() >= w.pendingAt) {
        const bool on = *w.pendingState;
        w.pendingState.reset();
        if (on && !w.fullscreen) {
            w.windowed = w.frame;
            // A window off every screen goes full screen on the primary one.
            auto screen = screenFrameAt(w.frame);
            if (!screen && !screens.empty()) screen = topLeft(screens.front().frame);
            w.frame = screen.value_or(w.frame);
        } else if (!on && w.fullscreen) {
            w.frame = w.windowed;
        }
        w.fullscreen = on;
    }
    return w;
}

Rect SimWorld::topLeft(const Rect& r) const {
    const double top = screens.empty() ? 0 : screens.front().frame.maxY();
    return {r.minX(), top - r.maxY(), r.w, r.h};
}

std::optional<Rect> SimWorld::screenFrameAt(const Rect& windowFrame) const {
    std::optional<Rect> best;
    double bestArea = 0;
    for (const auto& s : screens) {
        auto frame = topLeft(s.frame);
        double area = intersect(frame, windowFrame).area();
        if (area > bestArea) {
            bestArea = area;
            best = frame;
        }
    }
    return best;
}

// The window server gathers the windows of a vanished screen onto the primary one.
void SimWorld::gatherOffscreenWindows() {
    if (screens.empty()) return;
    const Rect home = topLeft(screens.front().visible);
    for (auto& [uid, w] : windows) {
        settle(w);
        if (screenFrameAt(w.frame)) continue;
        w.frame = {home.x, home.y, std::min(w.frame.w, home.w), std::min(w.frame.h, home.h)};
        if (w.fullscreen) w.frame = topLeft(screens.front().frame);
    }
}

// --- files

std::string SimWorld::normalized(std::string path) {
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

bool SimWorld::isUnder(const std::string& path, const std::string& folder) {
    if (folder == "/") return !path.empty() && path.front() == '/';
    return path.size() >= folder.size() && path.compare(0, folder.size(), folder) == 0 &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

bool SimWorld::exists(const std::string& path) const {
    return paths.count(normalized(path)) > 0;
}

void SimWorld::create(const std::string& path) {
    auto p = normalized(path);
    for (;;) {
        paths.insert(p);
        auto slash = p.rfind('/');
        if (slash == std::string::npos || p == "/") break;
        p = slash == 0 ? "/" : p.substr(0, slash);
    }
}

void SimWorld::erase(const std::string& path) {
    const auto p = normalized(path);
    std::erase_if(paths, [&](const std::string& x) { return isUnder(x, p); });
}

bool SimWorld::isWritable(const std::string& path) const {
    auto p = normalized(path);
    if (!exists(p)) return false;
    // The nearest folder the scenario said something about decides; without
    // a word, the user may write in the shared applications folder and at home.
    for (;;) {
        if (auto it = writable.find(p); it != writable.end()) return it->second;
        if (p == "/Applications" || p == normalized(home)) return true;
        auto slash = p.rfind('/');
        if (slash == std::string::npos || p == "/") return false;
        p = slash == 0 ? "/" : p.substr(0, slash);
    }
}

void SimWorld::moveBundle(const std::string& path) {
    if (!declared.count(normalized(bundlePath))) erase(bundlePath);
    bundlePath = normalized(path);
    create(bundlePath);
}

std::optional<std::string> SimWorld::takeFailure(Operation op) {
    auto it = failures.find(op);
    if (it == failures.end()) return std::nullopt;
    auto error = std::move(it->second);
    failures.erase(it);
    return error;
}

} // namespace tarnwick::sim
