#include "displays/Displays.h"

#include "base/JsonText.h"
#include "prefs/Prefs.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <unordered_map>

namespace tarnwick::Displays {

namespace {

// Whole points in plain digits, as keys have always been written, without a
// conversion to an integer type that a screen's reported size could overflow.
std::string whole(double v) {
    if (!std::isfinite(v)) return formatNumber(v);
    char buf[400]; // the longest finite double in fixed notation has 309 digits
    auto end = std::to_chars(buf, buf + sizeof buf, std::trunc(v) + 0.0, // + 0.0: -0 reads 0
                             std::chars_format::fixed)
                   .ptr;
    return std::string(buf, end);
}

} // namespace

bool hasArea(const Rect& r) {
    return r.isFinite() && r.w > 0 && r.h > 0;
}

std::vector<Display> all(Screens& screens) {
    auto list = screens.screens();
    if (list.empty()) return {};
    // Bottom-left to top-left, against the primary screen's whole frame.
    const double top = list.front().frame.maxY();
    auto flip = [top](const Rect& r) { return Rect{r.minX(), top - r.maxY(), r.w, r.h}; };
    std::vector<Display> out;
    for (const auto& s : list) {
        if (!s.number || !hasArea(s.frame)) continue;
        // A usable area without area of its own (a dock claiming the whole
        // screen) would swallow every window moved there: use the screen.
        const Rect visible = hasArea(s.visibleFrame) ? s.visibleFrame : s.frame;
        out.push_back(
            {*s.number, s.name, flip(s.frame), flip(visible), screens.isBuiltin(*s.number)});
    }
    return disambiguate(out);
}

std::vector<Display> disambiguate(const std::vector<Display>& displays) {
    std::unordered_map<std::string, std::vector<const Display*>> groups;
    for (const auto& d : displays)
        groups[d.name].push_back(&d);
    bool shared = std::any_of(groups.begin(), groups.end(),
                              [](const auto& g) { return g.second.size() > 1; });
    if (!shared) return displays;

    for (auto& [name, group] : groups)
        std::stable_sort(group.begin(), group.end(), [](const Display* a, const Display* b) {
            if (a->frame.minX() != b->frame.minX()) return a->frame.minX() < b->frame.minX();
            return a->frame.minY() < b->frame.minY();
        });
    std::vector<Display> out;
    out.reserve(displays.size());
    for (const auto& d : displays) {
        Display copy = d;
        const auto& group = groups[d.name];
        if (group.size() > 1) {
            auto pos = std::find_if(group.begin(), group.end(),
                                    [&](const Display* g) { return g->id == d.id; });
            copy.name = d.name + " (" + std::to_string(pos - group.begin() + 1) + ")";
        }
        out.push_back(std::move(copy));
    }
    return out;
}

std::optional<Display> target(const std::vector<Display>& displays, const Prefs& prefs) {
    return target(displays, prefs.targetDisplay());
}

std::optional<Display> target(const std::vector<Display>& displays,
                              const std::string& preferredName) {
    if (!preferredName.empty())
        for (const auto& d : displays)
            if (d.name == preferredName) return d;
    std::vector<const Display*> candidates;
    for (const auto& d : displays)
        if (!d.isBuiltin) candidates.push_back(&d);
    if (candidates.empty())
        for (const auto& d : displays)
            candidates.push_back(&d);
    if (candidates.empty()) return std::nullopt;
    const Display* best = candidates.front();
    for (const Display* c : candidates)
        if (c->frame.w * c->frame.h > best->frame.w * best->frame.h) best = c;
    return *best;
}

std::string configKey(const std::vector<Display>& displays) {
    std::vector<std::string> parts;
    for (const auto& d : displays)
        parts.push_back(d.name + "@" + whole(d.frame.w) + "x" + whole(d.frame.h));
    // Byte order, the same in every build: saved layouts are found by this key.
    std::sort(parts.begin(), parts.end());
    std::string key;
    for (const auto& p : parts) {
        if (!key.empty()) key += " + ";
        key += p;
    }
    return key;
}

DisplayDiff diff(const DisplayMap& old, const std::vector<Display>& now) {
    DisplayDiff out;
    for (const auto& d : now)
        if (!d.isBuiltin && !old.count(d.id)) out.added.push_back(d);
    // The map is ordered by id, which is the order removals are reported in.
    for (const auto& entry : old) {
        const Display& d = entry.second;
        if (d.isBuiltin) continue;
        bool still =
            std::any_of(now.begin(), now.end(), [&](const Display& n) { return n.id == d.id; });
        if (!still) out.removed.push_back(d);
    }
    return out;
}

std::optional<Display> containing(const Rect& rect, const std::vector<Display>& displays) {
    if (displays.empty()) return std::nullopt;
    const Display* best = &displays.front();
    Intersection bestCut = intersect(best->frame, rect);
    for (const auto& d : displays) {
        auto cut = intersect(d.frame, rect);
        if (cut.area() > bestCut.area()) {
            best = &d;
            bestCut = cut;
        }
    }
    if (bestCut.null || bestCut.area() <= 0) return std::nullopt;
    return *best;
}

std::optional<Display> nearest(const Rect& rect, const std::vector<Display>& displays) {
    if (!rect.isFinite()) return std::nullopt;
    if (auto on = containing(rect, displays)) return on;
    const Display* best = nullptr;
    double bestGap = 0;
    for (const auto& d : displays) {
        // The gap between the two rectangles, zero along an axis where they overlap.
        const double dx =
            std::max({0.0, d.frame.minX() - rect.maxX(), rect.minX() - d.frame.maxX()});
        const double dy =
            std::max({0.0, d.frame.minY() - rect.maxY(), rect.minY() - d.frame.maxY()});
        const double gap = dx * dx + dy * dy;
        if (!best || gap < bestGap) {
            best = &d;
            bestGap = gap;
        }
    }
    return best ? std::optional(*best) : std::nullopt;
}

bool reachable(const Rect& w, const std::vector<Display>& displays) {
    if (!w.isFinite() || w.width() <= 0 || w.height() <= 0) return true; // nothing to grab
    // The strip the window is dragged by; decorations sit above the frame on
    // some systems and inside it on others, so the frame's top strip stands for it.
    constexpr double titleBar = 24;
    const Rect bar{w.minX(), w.minY(), w.width(), std::min(titleBar, w.height())};
    double onArea = 0, onBar = 0;
    for (const auto& d : displays) {
        onArea += intersect(d.visible, w).area();
        onBar += intersect(d.visible, bar).area();
    }
    const double third = 1.0 / 3.0;
    return onArea >= w.width() * w.height() * third && onBar >= bar.width() * bar.height() * third;
}

std::optional<Rect> rescued(const Rect& w, const std::vector<Display>& displays) {
    auto d = nearest(w, displays);
    if (!d || !hasArea(d->visible)) return std::nullopt;
    const Rect& area = d->visible;
    // Whole points inside the area, so the frame written is on it.
    const double width = std::max(1.0, std::floor(std::min(w.width(), area.width())));
    const double height = std::max(1.0, std::floor(std::min(w.height(), area.height())));
    auto along = [](double at, double lo, double hi) {
        return std::max(std::ceil(lo), std::min(std::round(at), std::floor(hi)));
    };
    return Rect{along(w.minX(), area.minX(), area.maxX() - width),
                along(w.minY(), area.minY(), area.maxY() - height), width, height};
}

DisplayMap byId(const std::vector<Display>& displays) {
    DisplayMap m;
    for (const auto& d : displays)
        m[d.id] = d;
    return m;
}

std::string sizeText(const Display& d) {
    // Truncated, as a size in whole points reads; + 0.0 turns -0 into 0.
    auto points = [](double v) { return formatNumber(std::trunc(v) + 0.0); };
    return points(d.frame.width()) + " \u00d7 " + points(d.frame.height());
}

} // namespace tarnwick::Displays
