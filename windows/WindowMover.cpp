#include "windows/WindowMover.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <unordered_set>

namespace tarnwick {

namespace {

// Each value to its nearest whole point. Rounding outwards instead grows a
// window by a point each way whenever its new origin falls between points,
// and again on every move; a whole size stays exactly as it is.
Rect nearestWhole(const Rect& r) {
    return {std::round(r.x), std::round(r.y), std::round(r.w), std::round(r.h)};
}

} // namespace

template <>
std::optional<std::string> WindowMover::attr(const AXElement& el, const std::string& name) {
    AXAttribute v;
    if (ax_.copyAttribute(el, name, v) != axSuccess) return std::nullopt;
    if (auto* s = std::get_if<std::string>(&v)) return *s;
    return std::nullopt;
}

template <> std::optional<bool> WindowMover::attr(const AXElement& el, const std::string& name) {
    AXAttribute v;
    if (ax_.copyAttribute(el, name, v) != axSuccess) return std::nullopt;
    if (auto* b = std::get_if<bool>(&v)) return *b;
    return std::nullopt;
}

std::optional<AXValue> WindowMover::axValue(const AXElement& el, const std::string& name) {
    AXAttribute v;
    if (ax_.copyAttribute(el, name, v) != axSuccess) return std::nullopt;
    if (auto* a = std::get_if<AXValue>(&v)) return *a;
    return std::nullopt;
}

void WindowMover::setFrame(const AXElement& el, const Rect& frame) {
    const AXValue position{AXValueType::point, frame.x, frame.y};
    const AXValue size{AXValueType::size, frame.w, frame.h};
    // Size first so the position fits on the new display, and again after the
    // move because an application may clamp the size to its old display.
    ax_.setAttribute(el, "AXSize", size);
    ax_.setAttribute(el, "AXPosition", position);
    ax_.setAttribute(el, "AXSize", size);
}

bool WindowMover::setFullscreen(const AXElement& el, bool on) {
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

RemoteToken WindowMover::remoteToken(int32_t pid, uint64_t elementId) {
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

void WindowMover::resolvePrivate() {
    std::call_once(resolved_, [this] {
        createWithRemoteToken_ = ax_.lookupCreateWithRemoteToken();
        getWindowID_ = ax_.lookupGetWindow();
    });
}

AXElement WindowMover::axElement(int32_t pid, uint64_t elementId) {
    auto token = remoteToken(pid, elementId);
    resolvePrivate();
    if (!createWithRemoteToken_) return nullptr;
    return ax_.createWithRemoteToken(token);
}

std::vector<AXElement> WindowMover::scan(int32_t pid, const std::vector<WindowListEntry>& list) {
    std::set<uint32_t> wanted;
    for (const auto& e : list) {
        if (!e.ownerPid || *e.ownerPid != pid) continue;
        if (!e.layer || *e.layer != 0) continue;
        if (!e.bounds || e.bounds->w < 40 || e.bounds->h < 40) continue;
        if (!e.number) continue;
        wanted.insert(static_cast<uint32_t>(*e.number));
    }
    resolvePrivate();
    std::vector<AXElement> found;
    for (uint64_t id = 0; id < scanLimit && !wanted.empty(); ++id) {
        auto el = axElement(pid, id);
        if (!el) continue;
        uint32_t number = 0;
        if (!getWindowID_ || ax_.getWindow(el, number) != axSuccess) continue;
        if (wanted.erase(number)) found.push_back(std::move(el));
    }
    return found;
}

std::optional<Rect> WindowMover::readFrame(const AXElement& el) {
    auto pos = axValue(el, "AXPosition");
    if (!pos || pos->type != AXValueType::point) return std::nullopt;
    auto size = axValue(el, "AXSize");
    if (!size || size->type != AXValueType::size) return std::nullopt;
    return Rect{pos->a, pos->b, size->a, size->b};
}

std::vector<AXWindow> WindowMover::windows() {
    const auto excludedList = prefs_.excluded();
    const std::unordered_set<std::string> excluded(excludedList.begin(), excludedList.end());
    // The application list comes first: a platform may take its snapshot of
    // the desktop there and answer the rest of the listing from it.
    const auto apps = ax_.runningApplications();
    const auto own = ax_.ownBundleIdentifier();
    resolvePrivate();
    const bool scanning = createWithRemoteToken_ && getWindowID_;
    // Only the scan reads the window server's list, and a platform without
    // the scan may have no cheap way to give one.
    const auto list = scanning ? ax_.windowList().value_or(std::vector<WindowListEntry>{})
                               : std::vector<WindowListEntry>{};

    std::vector<AXWindow> out;
    for (const auto& app : apps) {
        if (app->policy != ActivationPolicy::regular) continue;
        if (!app->bundleIdentifier) continue;
        if (excluded.count(*app->bundleIdentifier)) continue;
        if (own && *app->bundleIdentifier == *own) continue;

        std::vector<AXElement> elements;
        if (scanning) {
            // Finds windows on other desktop spaces too, which "AXWindows" leaves out.
            elements = scan(app->pid, list);
        } else {
            auto appEl = ax_.createApplication(app->pid);
            ax_.setMessagingTimeout(appEl, messagingTimeout);
            AXAttribute v;
            if (ax_.copyAttribute(appEl, "AXWindows", v) == axSuccess)
                if (auto* els = std::get_if<std::vector<AXElement>>(&v)) elements = *els;
        }
        for (auto& el : elements) {
            ax_.setMessagingTimeout(el, messagingTimeout);
            if (attr<std::string>(el, "AXSubrole") != "AXStandardWindow") continue;
            if (attr<bool>(el, "AXMinimized").value_or(false)) continue;
            auto pos = axValue(el, "AXPosition");
            if (!pos || pos->type != AXValueType::point) continue;
            auto size = axValue(el, "AXSize");
            if (!size || size->type != AXValueType::size) continue;
            auto title = attr<std::string>(el, "AXTitle").value_or("");
            bool fullscreen = attr<bool>(el, "AXFullScreen").value_or(false);
            bool maximized = attr<bool>(el, "AXMaximized").value_or(false);
            out.push_back({app,
                           el,
                           {pos->a, pos->b, size->a, size->b},
                           std::move(title),
                           fullscreen,
                           maximized});
        }
    }
    return out;
}

Rect WindowMover::place(const Rect& W, const Rect& S, const Rect& T, Placement placement) {
    switch (placement) {
    case Placement::keepSize: {
        double w = std::min(W.w, T.w), h = std::min(W.h, T.h);
        double dx = S.w - W.w, dy = S.h - W.h;
        if (dx <= 1) dx = 1;
        if (dy <= 1) dy = 1;
        auto clamp01 = [](double f) { return f > 1 ? 1.0 : (f > 0 ? f : 0.0); };
        double fx = clamp01((W.x - S.x) / dx), fy = clamp01((W.y - S.y) / dy);
        return {T.x + fx * (T.w - w), T.y + fy * (T.h - h), w, h};
    }
    case Placement::scale: {
        double sx = T.w / S.w, sy = T.h / S.h;
        return {T.x + sx * (W.x - S.x), T.y + sy * (W.y - S.y), sx * W.w, sy * W.h};
    }
    case Placement::fill:
        return T;
    }
    return T;
}

std::optional<Rect> WindowMover::landing(const Rect& w, const Rect& source, const Rect& dest,
                                         Placement placement) {
    if (!Displays::hasArea(dest)) return std::nullopt;
    // What an application is handed must be a window it can draw, on the
    // display it was sent to. Anything else (a source without area to scale
    // from, coordinates so large that rounding eats the size, a usable area
    // thinner than a point) is no move.
    auto sensible = [&](const Rect& r) {
        return r.isFinite() && r.w >= 1 && r.h >= 1 && intersect(r, dest).area() > 0;
    };
    if (placement == Placement::fill) {
        const Rect frame = nearestWhole(dest);
        return sensible(frame) ? std::optional(frame) : std::nullopt;
    }
    // Only a window that has a size can keep it or have it scaled.
    if (!Displays::hasArea(w)) return std::nullopt;
    Rect frame = nearestWhole(place(w, source, dest, placement));
    if (sensible(frame)) return frame;
    // Keeping the size needs nothing of the source's proportions.
    if (placement != Placement::keepSize) {
        frame = nearestWhole(place(w, source, dest, Placement::keepSize));
        if (sensible(frame)) return frame;
    }
    return std::nullopt;
}

bool WindowMover::destinationPresent(uint32_t id) {
    auto active = screens_.activeDisplayList();
    if (!active || active->empty()) return false;
    return std::find(active->begin(), active->end(), id) != active->end();
}

WindowMover::MoveResult WindowMover::moveAll(const Display& to, const std::vector<Display>& in,
                                             Placement placement,
                                             const std::optional<std::vector<AXWindow>>& only,
                                             const Progress& progress) {
    const std::vector<AXWindow> list = only ? *only : windows();
    MoveResult result;
    if (list.empty()) return result;
    const auto total = static_cast<int64_t>(list.size());
    for (int64_t i = 0; i < total; ++i) {
        const AXWindow& w = list[static_cast<size_t>(i)];
        // Checked before every window, so an unplug midway stops within one window.
        if (!destinationPresent(to.id)) {
            result.targetLost = true;
            return result;
        }
        if (progress) progress(i + 1, total, w.app ? w.app->localizedName.value_or("") : "");
        // A window on no display is on none of them, the target included, so
        // every move takes it: placed as if from the display nearest to it,
        // keeping its size, as where it stands off that display says nothing
        // a scale could use.
        const auto on = Displays::containing(w.frame, in);
        const auto source = on ? on : Displays::nearest(w.frame, in);
        if (!source) continue;
        const Placement rule = on || placement == Placement::fill ? placement : Placement::keepSize;
        if (!w.fullscreen) {
            // A maximized window already fills the display it is on.
            if (on && on->id == to.id && (placement != Placement::fill || w.maximized)) continue;
            if (w.maximized) {
                if (moveMaximized(w, *source, to, in, placement)) ++result.moved;
                continue;
            }
            auto frame = landing(w.frame, source->visible, to.visible, rule);
            if (!frame) continue;
            setFrame(w.el, *frame);
            ++result.moved;
            continue;
        }
        if (on && on->id == to.id) continue;
        if (!prefs_.moveFullscreen()) continue;
        if (!setFullscreen(w.el, false)) continue;
        // Leaving full screen takes about a second, long enough for the
        // destination to go; the window then goes back where it was.
        const bool lost = !destinationPresent(to.id);
        if (auto frame = lost ? std::nullopt : readFrame(w.el)) {
            auto from = Displays::containing(*frame, in).value_or(*source);
            if (auto landed = landing(*frame, from.visible, to.visible, placement)) {
                setFrame(w.el, *landed);
                ++result.moved;
            }
        }
        if (!setFullscreen(w.el, true) && !setFullscreen(w.el, true)) ++result.leftWindowed;
        if (lost) {
            result.targetLost = true;
            return result;
        }
    }
    return result;
}

bool WindowMover::moveMaximized(const AXWindow& w, const Display& source, const Display& to,
                                const std::vector<Display>& in, Placement placement) {
    // The window manager keeps a maximized window's size and would maximize
    // it again where it stood: it comes out of the state, its own frame is
    // placed like any window's, and it is maximized again where it landed.
    setMaximized(w.el, false);
    const Rect frame = readFrame(w.el).value_or(w.frame);
    const auto on = Displays::containing(frame, in);
    const Placement rule = on || placement == Placement::fill ? placement : Placement::keepSize;
    const auto landed = landing(frame, on.value_or(source).visible, to.visible, rule);
    if (landed) setFrame(w.el, *landed);
    setMaximized(w.el, true);
    return landed.has_value();
}

void WindowMover::setMaximized(const AXElement& el, bool on) {
    ax_.setAttribute(el, "AXMaximized", on);
}

std::string WindowMover::MoveResult::summary(const std::string& to) const {
    std::string text =
        "Moved " + std::to_string(moved) + (moved == 1 ? " window" : " windows") + " to " + to;
    if (leftWindowed >= 1)
        text += " \u00b7 " + std::to_string(leftWindowed) + " couldn't go back to full screen";
    if (targetLost) text += " \u00b7 stopped because the display was disconnected";
    return text;
}

} // namespace tarnwick
