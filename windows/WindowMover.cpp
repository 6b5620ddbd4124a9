#include "windows/WindowMover.h"

#include <algorithm>
#include <cmath>
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

std::vector<AppWindow> WindowMover::windows() {
    const auto excludedList = prefs_.excluded();
    const std::unordered_set<std::string> excluded(excludedList.begin(), excludedList.end());
    const auto own = windows_.ownIdentifier();
    return windows_.list([&](const RunningApp& app) {
        if (app.kind != AppKind::regular) return false;
        if (!app.identifier) return false;
        if (excluded.count(*app.identifier)) return false;
        return !(own && *app.identifier == *own);
    });
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
                                             const std::optional<std::vector<AppWindow>>& only,
                                             const Progress& progress) {
    const std::vector<AppWindow> list = only ? *only : windows();
    MoveResult result;
    if (list.empty()) return result;
    const auto total = static_cast<int64_t>(list.size());
    for (int64_t i = 0; i < total; ++i) {
        const AppWindow& w = list[static_cast<size_t>(i)];
        // Checked before every window, so an unplug midway stops within one window.
        if (!destinationPresent(to.id)) {
            result.targetLost = true;
            return result;
        }
        if (progress) progress(i + 1, total, w.app ? w.app->name.value_or("") : "");
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
            windows_.place(w.ref, *frame);
            ++result.moved;
            continue;
        }
        if (on && on->id == to.id) continue;
        if (!prefs_.moveFullscreen()) continue;
        if (!windows_.setFullscreen(w.ref, false)) continue;
        // Leaving full screen takes about a second, long enough for the
        // destination to go; the window then goes back where it was.
        const bool lost = !destinationPresent(to.id);
        if (auto frame = lost ? std::nullopt : windows_.frame(w.ref)) {
            auto from = Displays::containing(*frame, in).value_or(*source);
            if (auto landed = landing(*frame, from.visible, to.visible, placement)) {
                windows_.place(w.ref, *landed);
                ++result.moved;
            }
        }
        if (!windows_.setFullscreen(w.ref, true) && !windows_.setFullscreen(w.ref, true))
            ++result.leftWindowed;
        if (lost) {
            result.targetLost = true;
            return result;
        }
    }
    return result;
}

bool WindowMover::moveMaximized(const AppWindow& w, const Display& source, const Display& to,
                                const std::vector<Display>& in, Placement placement) {
    // The window manager keeps a maximized window's size and would maximize
    // it again where it stood: it comes out of the state, its own frame is
    // placed like any window's, and it is maximized again where it landed.
    windows_.setMaximized(w.ref, false);
    const Rect frame = windows_.frame(w.ref).value_or(w.frame);
    const auto on = Displays::containing(frame, in);
    const Placement rule = on || placement == Placement::fill ? placement : Placement::keepSize;
    const auto landed = landing(frame, on.value_or(source).visible, to.visible, rule);
    if (landed) windows_.place(w.ref, *landed);
    windows_.setMaximized(w.ref, true);
    return landed.has_value();
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
