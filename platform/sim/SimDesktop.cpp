#include "platform/sim/SimDesktop.h"

#include "base/JsonText.h"

#include <algorithm>

namespace tarnwick::sim {

namespace {

constexpr double defaultMessagingTimeout = 6.0;

class Clip : public AudioClip {
  public:
    Clip(Transcript& t, std::string name)
        : t_(t)
        , name_(std::move(name)) {}
    void play() override { t_.line("sound", name_); }
    void stop() override { t_.line("sound", "stop"); }

  private:
    Transcript& t_;
    std::string name_;
};

std::string names(const std::vector<Display>& displays) {
    nlohmann::json list = nlohmann::json::array();
    for (const auto& d : displays)
        list.push_back(d.name);
    return compactJson(list);
}

} // namespace

struct SimDesktop::Element : AXElementObject {
    int32_t pid = 0;
    uint64_t window = 0; // 0: the application element
    double timeout = defaultMessagingTimeout;
    std::optional<Size> writtenSize;
};

SimDesktop::SimDesktop(SimDispatch& dispatch, Transcript& transcript)
    : dispatch_(dispatch)
    , transcript_(transcript) {}

Platform SimDesktop::platform() {
    return {dispatch_, *this, *this, *this, *this, *this, *this, *this, *this};
}

std::string SimDesktop::rect(const Rect& r) {
    return formatNumber(r.x) + "," + formatNumber(r.y) + "," + formatNumber(r.w) + "," +
           formatNumber(r.h);
}

std::string SimDesktop::formatDefaultsValue(const DefaultsValue& v) {
    if (v.is_binary()) {
        const auto& bytes = v.get_binary();
        return "data:" + quoted(std::string(bytes.begin(), bytes.end()));
    }
    return compactJson(v);
}

// --- screens

void SimDesktop::addScreen(const Screen& s) {
    for (auto& existing : screens_)
        if (existing.id == s.id) {
            existing = s;
            return;
        }
    screens_.push_back(s);
}

void SimDesktop::unplug(uint32_t id) {
    std::erase_if(screens_, [id](const Screen& s) { return s.id == id; });
    gatherOffscreenWindows();
}

void SimDesktop::makePrimary(uint32_t id) {
    auto it = std::find_if(screens_.begin(), screens_.end(),
                           [id](const Screen& s) { return s.id == id; });
    if (it != screens_.end()) std::rotate(screens_.begin(), it, it + 1);
}

bool SimDesktop::hasScreen(uint32_t id) const {
    return std::any_of(screens_.begin(), screens_.end(),
                       [id](const Screen& s) { return s.id == id; });
}

Rect SimDesktop::topLeft(const Rect& r) const {
    const double top = screens_.empty() ? 0 : screens_.front().frame.maxY();
    return {r.minX(), top - r.maxY(), r.w, r.h};
}

std::optional<Rect> SimDesktop::screenFrameAt(const Rect& windowFrame) const {
    std::optional<Rect> best;
    double bestArea = 0;
    for (const auto& s : screens_) {
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
void SimDesktop::gatherOffscreenWindows() {
    if (screens_.empty()) return;
    const Rect home = topLeft(screens_.front().visible);
    for (auto& [uid, w] : windows_) {
        settle(w);
        if (screenFrameAt(w.frame)) continue;
        w.frame = {home.x, home.y, std::min(w.frame.w, home.w), std::min(w.frame.h, home.h)};
        if (w.fullscreen) w.frame = topLeft(screens_.front().frame);
    }
}

std::vector<ScreenInfo> SimDesktop::screens() {
    std::vector<ScreenInfo> out;
    for (const auto& s : screens_) {
        ScreenInfo info;
        if (!s.noid) info.number = s.id;
        info.name = s.name;
        info.frame = s.frame;
        info.visibleFrame = s.visible;
        if (s.notch) {
            info.safeAreaTop = s.notch->h;
            const double side = (s.frame.w - s.notch->w) / 2;
            const double y = s.frame.maxY() - s.notch->h;
            info.auxiliaryTopLeft = Rect{s.frame.x, y, side, s.notch->h};
            info.auxiliaryTopRight = Rect{s.frame.x + side + s.notch->w, y, side, s.notch->h};
        }
        out.push_back(std::move(info));
    }
    return out;
}

bool SimDesktop::isBuiltin(uint32_t displayId) {
    return std::any_of(screens_.begin(), screens_.end(),
                       [&](const Screen& s) { return s.id == displayId && s.builtin; });
}

std::optional<std::vector<uint32_t>> SimDesktop::activeDisplayList() {
    std::vector<uint32_t> ids;
    for (const auto& s : screens_)
        ids.push_back(s.id);
    return ids;
}

// --- notifications

void SimDesktop::observe(PlatformEvent event, std::function<void()> handler) {
    observers_.emplace(event, std::move(handler));
}

void SimDesktop::post(PlatformEvent e) {
    auto [from, to] = observers_.equal_range(e);
    std::vector<std::function<void()>> handlers;
    for (auto it = from; it != to; ++it)
        handlers.push_back(it->second);
    for (auto& h : handlers)
        h();
}

// --- defaults

void SimDesktop::registerDefaults(const std::map<std::string, DefaultsValue>& values) {
    for (const auto& [k, v] : values)
        registered_[k] = v;
}

std::optional<DefaultsValue> SimDesktop::object(const std::string& key) {
    if (auto it = user_.find(key); it != user_.end()) return it->second;
    if (auto it = registered_.find(key); it != registered_.end()) return it->second;
    return std::nullopt;
}

void SimDesktop::set(const std::string& key, const DefaultsValue& value) {
    user_[key] = value;
    transcript_.line("defaults", key + " " + formatDefaultsValue(value));
}

void SimDesktop::remove(const std::string& key) {
    user_.erase(key);
    transcript_.line("defaults", key + " removed");
}

// --- login items

std::optional<std::string> SimDesktop::registerApp() {
    if (loginFailure_) {
        auto error = std::move(loginFailure_);
        loginFailure_.reset();
        return error;
    }
    loginEnabled_ = true;
    return std::nullopt;
}

std::optional<std::string> SimDesktop::unregisterApp() {
    if (loginFailure_) {
        auto error = std::move(loginFailure_);
        loginFailure_.reset();
        return error;
    }
    loginEnabled_ = false;
    return std::nullopt;
}

// --- audio

std::optional<std::string> SimDesktop::resource(const std::string& name,
                                                const std::string& extension) {
    auto it = resources_.find(name);
    if (extension != "wav" || it == resources_.end() || it->second == Resource::missing)
        return std::nullopt;
    return bundlePath_ + "/Contents/Resources/" + name + ".wav";
}

std::shared_ptr<AudioClip> SimDesktop::load(const std::string& location) {
    auto slash = location.rfind('/');
    auto name = location.substr(slash == std::string::npos ? 0 : slash + 1);
    if (name.size() > 4) name.resize(name.size() - 4);
    auto it = resources_.find(name);
    if (it == resources_.end() || it->second != Resource::present) return nullptr;
    return std::make_shared<Clip>(transcript_, name);
}

// --- applications and windows

void SimDesktop::addApp(App a) {
    std::erase_if(apps_, [&](const App& x) { return x.pid == a.pid; });
    a.ref = std::make_shared<RunningApp>(RunningApp{a.pid, a.bundle, a.name, a.policy});
    apps_.push_back(std::move(a));
}

bool SimDesktop::hasApp(int32_t pid) const {
    return std::any_of(apps_.begin(), apps_.end(), [&](const App& a) { return a.pid == pid; });
}

SimDesktop::App* SimDesktop::app(int32_t pid) {
    for (auto& a : apps_)
        if (a.pid == pid) return &a;
    return nullptr;
}

SimDesktop::Window* SimDesktop::window(uint64_t uid) {
    auto it = windows_.find(uid);
    return it == windows_.end() ? nullptr : &it->second;
}

void SimDesktop::addWindow(Window w, bool explicitElement, bool explicitNumber) {
    App* a = app(w.pid);
    if (!explicitElement) w.element = a->nextElement;
    a->nextElement = std::max(a->nextElement, w.element + 1);
    if (!explicitNumber) w.number = nextNumber_++;
    w.uid = nextUid_++;
    w.windowed = w.frame;
    windows_.emplace(w.uid, std::move(w));
}

SimDesktop::Window* SimDesktop::findWindow(int32_t pid, const std::string& title) {
    for (auto& [uid, w] : windows_)
        if (w.pid == pid && w.title == title) return &settle(w);
    return nullptr;
}

void SimDesktop::moveByHand(Window& w, const Rect& frame) {
    settle(w);
    w.frame = frame;
    if (!w.fullscreen) w.windowed = frame;
}

void SimDesktop::closeWindow(const Window& w) {
    windows_.erase(w.uid);
}

void SimDesktop::quitApp(int32_t pid) {
    std::erase_if(windows_, [pid](const auto& entry) { return entry.second.pid == pid; });
    std::erase_if(apps_, [pid](const App& a) { return a.pid == pid; });
}

SimDesktop::Window& SimDesktop::settle(Window& w) {
    if (w.pendingState && dispatch_.nowMicros() >= w.pendingAt) {
        const bool on = *w.pendingState;
        w.pendingState.reset();
        if (on && !w.fullscreen) {
            w.windowed = w.frame;
            // A window off every screen goes full screen on the primary one.
            auto screen = screenFrameAt(w.frame);
            if (!screen && !screens_.empty()) screen = topLeft(screens_.front().frame);
            w.frame = screen.value_or(w.frame);
        } else if (!on && w.fullscreen) {
            w.frame = w.windowed;
        }
        w.fullscreen = on;
    }
    return w;
}

std::string SimDesktop::windowRef(const Window& w) const {
    return std::to_string(w.pid) + " " + quoted(w.title);
}

std::vector<AppRef> SimDesktop::runningApplications() {
    std::vector<AppRef> out;
    for (const auto& a : apps_)
        out.push_back(a.ref);
    return out;
}

std::optional<std::vector<WindowListEntry>> SimDesktop::windowList() {
    std::vector<WindowListEntry> out;
    for (auto& [uid, w] : windows_) {
        if (w.unlisted) continue;
        settle(w);
        out.push_back({w.pid, w.layer, w.listed.value_or(Size{w.frame.w, w.frame.h}), w.number});
    }
    return out;
}

AXElement SimDesktop::createApplication(int32_t pid) {
    auto el = std::make_shared<Element>();
    el->pid = pid;
    return el;
}

AXError SimDesktop::setMessagingTimeout(const AXElement& element, double seconds) {
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el || seconds < 0) return axIllegalArgument;
    el->timeout = seconds == 0 ? defaultMessagingTimeout : seconds;
    return axSuccess;
}

AXError SimDesktop::copyAttribute(const AXElement& element, const std::string& name,
                                  AXAttribute& value) {
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el) return axIllegalArgument;
    App* a = app(el->pid);
    if (!a) return axInvalidUIElement;
    if (a->slow) {
        dispatch_.sleep(el->timeout);
        return axCannotComplete;
    }
    if (!el->window) {
        if (name != "AXWindows") return axAttributeUnsupported;
        std::vector<AXElement> list;
        for (auto& [uid, w] : windows_) {
            if (w.pid != el->pid) continue;
            auto child = std::make_shared<Element>();
            child->pid = w.pid;
            child->window = uid;
            list.push_back(child);
        }
        value = std::move(list);
        return axSuccess;
    }
    Window* w = window(el->window);
    if (!w) return axInvalidUIElement;
    settle(*w);
    if (name == "AXSubrole") {
        if (!w->subrole) return axNoValue;
        value = *w->subrole;
    } else if (name == "AXMinimized") {
        value = w->minimized;
    } else if (name == "AXPosition") {
        value = AXValue{AXValueType::point, w->frame.x, w->frame.y};
    } else if (name == "AXSize") {
        value = AXValue{AXValueType::size, w->frame.w, w->frame.h};
    } else if (name == "AXTitle") {
        if (w->notitle) return axNoValue;
        value = w->title;
    } else if (name == "AXFullScreen") {
        value = w->fullscreen;
    } else {
        return axAttributeUnsupported;
    }
    return axSuccess;
}

AXError SimDesktop::setAttribute(const AXElement& element, const std::string& name,
                                 const AXAttribute& value) {
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el) return axIllegalArgument;
    App* a = app(el->pid);
    if (!a) return axInvalidUIElement;
    Window* w = el->window ? window(el->window) : nullptr;
    if (!w) return el->window ? axInvalidUIElement : axAttributeUnsupported;
    settle(*w);

    AXError result = axSuccess;
    if (name == "AXSize" || name == "AXPosition") {
        auto* v = std::get_if<AXValue>(&value);
        const auto wanted = name == "AXSize" ? AXValueType::size : AXValueType::point;
        if (!v || v->type != wanted) return axIllegalArgument;
        if (name == "AXSize") {
            el->writtenSize = Size{v->a, v->b};
        } else {
            Size size = el->writtenSize.value_or(Size{w->frame.w, w->frame.h});
            transcript_.line("frame", windowRef(*w) + " " + rect({v->a, v->b, size.w, size.h}));
        }
        if (a->slow) {
            dispatch_.sleep(el->timeout);
            return axCannotComplete;
        }
        w = window(el->window); // the sleep may have let the window go
        if (!w) return axInvalidUIElement;
        if (w->fullscreen) return axCannotComplete; // a full-screen window keeps its frame
        if (name == "AXSize")
            w->frame.w = v->a, w->frame.h = v->b;
        else
            w->frame.x = v->a, w->frame.y = v->b;
        w->windowed = w->frame;
    } else if (name == "AXFullScreen") {
        auto* on = std::get_if<bool>(&value);
        if (!on) return axIllegalArgument;
        transcript_.line("fullscreen", windowRef(*w) + (*on ? " on" : " off"));
        if (a->slow) {
            dispatch_.sleep(el->timeout);
            return axCannotComplete;
        }
        const auto delay = *on ? w->enter : w->leave;
        if (*on == w->fullscreen || !delay) {
            w->pendingState.reset();
        } else {
            w->pendingState = *on;
            w->pendingAt = dispatch_.nowMicros() + SimDispatch::micros(*delay);
        }
    } else {
        result = axAttributeUnsupported;
    }
    return result;
}

AXElement SimDesktop::createWithRemoteToken(const RemoteToken& token) {
    auto readLE = [&](size_t at, size_t width) {
        uint64_t v = 0;
        for (size_t i = 0; i < width; ++i)
            v |= static_cast<uint64_t>(token[at + i]) << (8 * i);
        return v;
    };
    if (readLE(8, 4) != 0x636F636F || readLE(4, 4) != 0) return nullptr;
    const auto pid = static_cast<int32_t>(readLE(0, 4));
    const uint64_t elementId = readLE(12, 8);
    if (!app(pid)) return nullptr;
    for (auto& [uid, w] : windows_)
        if (w.pid == pid && w.element == elementId) {
            auto el = std::make_shared<Element>();
            el->pid = pid;
            el->window = uid;
            return el;
        }
    return nullptr;
}

AXError SimDesktop::getWindow(const AXElement& element, uint32_t& windowNumber) {
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el || !el->window) return axIllegalArgument;
    Window* w = window(el->window);
    if (!w) return axInvalidUIElement;
    windowNumber = static_cast<uint32_t>(w->number);
    return axSuccess;
}

// --- recording surfaces

void RecordingIsland::announce(const std::vector<Display>& displays, bool connected,
                               const std::vector<Display>& remaining) {
    t_.line("island", std::string("announce ") + (connected ? "connected " : "disconnected ") +
                          names(displays) + " remaining " + names(remaining));
}

void RecordingIsland::choose(const Display& target, const std::vector<Display>& connected,
                             double settle) {
    t_.line("island", "choose target " + quoted(target.name) + " connected " + names(connected) +
                          " settle " + formatNumber(settle));
}

void RecordingIsland::close(bool animated) {
    t_.line("island", animated ? "close animated" : "close");
}

void RecordingSetupWindow::show(SetupStep start) {
    if (!step_) t_.line("window", "setup shown");
    if (step_ != SetupStep::done) step_ = start;
}

} // namespace tarnwick::sim
