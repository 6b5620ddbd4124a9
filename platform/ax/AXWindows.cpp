#include "platform/ax/AXWindows.h"

#include <set>

namespace tarnwick::ax {

AXElement AXWindows::element(const WindowRef& window) {
    return std::dynamic_pointer_cast<AXElementObject>(window);
}

template <typename T>
std::optional<T> AXWindows::attr(const AXElement& el, const std::string& name) {
    AXAttribute v;
    if (ax_.copyAttribute(el, name, v) != axSuccess) return std::nullopt;
    if (auto* t = std::get_if<T>(&v)) return std::move(*t);
    return std::nullopt;
}

std::optional<AXValue> AXWindows::value(const AXElement& el, const std::string& name) {
    return attr<AXValue>(el, name);
}

std::optional<Rect> AXWindows::readFrame(const AXElement& el) {
    auto pos = value(el, "AXPosition");
    if (!pos || pos->type != AXValueType::point) return std::nullopt;
    auto size = value(el, "AXSize");
    if (!size || size->type != AXValueType::size) return std::nullopt;
    return Rect{pos->a, pos->b, size->a, size->b};
}

RemoteToken AXWindows::remoteToken(int32_t pid, uint64_t elementId) {
    RemoteToken token{};
    auto putLE = [&](size_t at, uint64_t v, size_t width) {
        for (size_t i = 0; i < width; ++i)
            token[at + i] = static_cast<uint8_t>(v >> (8 * i));
    };
    putLE(0, static_cast<uint32_t>(pid), 4);
    putLE(8, 0x636F636F, 4);
    putLE(12, elementId, 8);
    return token;
}

void AXWindows::resolvePrivate() {
    std::call_once(resolved_, [this] {
        createWithRemoteToken_ = ax_.lookupCreateWithRemoteToken();
        getWindowID_ = ax_.lookupGetWindow();
    });
}

std::vector<AXElement> AXWindows::scan(int32_t pid, const std::vector<WindowListEntry>& list) {
    std::set<uint32_t> wanted;
    for (const auto& e : list) {
        if (!e.ownerPid || *e.ownerPid != pid) continue;
        if (!e.layer || *e.layer != 0) continue;
        if (!e.bounds || e.bounds->w < 40 || e.bounds->h < 40) continue;
        if (!e.number) continue;
        wanted.insert(static_cast<uint32_t>(*e.number));
    }
    std::vector<AXElement> found;
    for (uint64_t id = 0; id < scanLimit && !wanted.empty(); ++id) {
        auto el = ax_.createWithRemoteToken(remoteToken(pid, id));
        if (!el) continue;
        uint32_t number = 0;
        if (ax_.getWindow(el, number) != axSuccess) continue;
        if (wanted.erase(number)) found.push_back(std::move(el));
    }
    return found;
}

std::vector<AppWindow> AXWindows::list(const std::function<bool(const RunningApp&)>& wanted) {
    // The application list comes first: a platform may take its snapshot of
    // the desktop there and answer the rest of the listing from it.
    const auto apps = ax_.runningApplications();
    resolvePrivate();
    const bool scanning = createWithRemoteToken_ && getWindowID_;
    // Only the scan reads the window server's list, and a platform without
    // the scan may have no cheap way to give one.
    const auto windowServer = scanning ? ax_.windowList().value_or(std::vector<WindowListEntry>{})
                                       : std::vector<WindowListEntry>{};

    std::vector<AppWindow> out;
    for (const auto& app : apps) {
        if (!wanted(*app)) continue;
        std::vector<AXElement> elements;
        if (scanning) {
            // Finds windows on other desktop spaces too, which "AXWindows" leaves out.
            elements = scan(app->pid, windowServer);
        } else {
            auto appEl = ax_.createApplication(app->pid);
            ax_.setMessagingTimeout(appEl, messagingTimeout);
            if (auto els = attr<std::vector<AXElement>>(appEl, "AXWindows"))
                elements = std::move(*els);
        }
        for (auto& el : elements) {
            ax_.setMessagingTimeout(el, messagingTimeout);
            if (attr<std::string>(el, "AXSubrole") != "AXStandardWindow") continue;
            if (attr<bool>(el, "AXMinimized").value_or(false)) continue;
            auto frame = readFrame(el);
            if (!frame) continue;
            auto title = attr<std::string>(el, "AXTitle").value_or("");
            const bool fullscreen = attr<bool>(el, "AXFullScreen").value_or(false);
            const bool maximized = attr<bool>(el, "AXMaximized").value_or(false);
            out.push_back({app, std::move(el), *frame, std::move(title), fullscreen, maximized});
        }
    }
    return out;
}

void AXWindows::place(const WindowRef& window, const Rect& frame) {
    const auto el = element(window);
    if (!el) return;
    const AXValue position{AXValueType::point, frame.x, frame.y};
    const AXValue size{AXValueType::size, frame.w, frame.h};
    // Size first so the position fits on the new display, and again after the
    // move because an application may clamp the size to its old display.
    ax_.setAttribute(el, "AXSize", size);
    ax_.setAttribute(el, "AXPosition", position);
    ax_.setAttribute(el, "AXSize", size);
}

bool AXWindows::setFullscreen(const WindowRef& window, bool on) {
    const auto el = element(window);
    if (!el) return false;
    ax_.setAttribute(el, "AXFullScreen", on);
    for (int poll = 0; poll < 50; ++poll) {
        dispatch_.sleep(0.1);
        auto state = attr<bool>(el, "AXFullScreen");
        if (state && *state == on) {
            // The animation goes on after the attribute flips; let it finish
            // before the window is touched again.
            dispatch_.sleep(0.9);
            return true;
        }
    }
    return false;
}

void AXWindows::setMaximized(const WindowRef& window, bool on) {
    if (const auto el = element(window)) ax_.setAttribute(el, "AXMaximized", on);
}

std::optional<Rect> AXWindows::frame(const WindowRef& window) {
    const auto el = element(window);
    if (!el) return std::nullopt;
    return readFrame(el);
}

} // namespace tarnwick::ax
