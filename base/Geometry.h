#pragma once

#include <algorithm>
#include <cmath>

namespace tarnwick {

struct Point {
    double x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double w = 0, h = 0;
    bool operator==(const Size&) const = default;
};

// A rectangle of doubles; whether y grows up or down depends on who made it,
// and every use says which.
struct Rect {
    double x = 0, y = 0, w = 0, h = 0;

    double minX() const { return w < 0 ? x + w : x; }
    double minY() const { return h < 0 ? y + h : y; }
    double maxX() const { return w < 0 ? x : x + w; }
    double maxY() const { return h < 0 ? y : y + h; }
    double width() const { return std::fabs(w); }
    double height() const { return std::fabs(h); }
    Point origin() const { return {x, y}; }
    Size size() const { return {w, h}; }
    bool isFinite() const {
        return std::isfinite(x) && std::isfinite(y) && std::isfinite(w) && std::isfinite(h);
    }
    bool operator==(const Rect&) const = default;
};

// The overlap of two rectangles, or nullopt-like empty result (w == h == 0 and
// `null` set) when they do not overlap; touching edges give a zero-area rect.
struct Intersection {
    bool null = true;
    Rect rect;
    double area() const { return null ? 0.0 : rect.w * rect.h; }
};

inline Intersection intersect(const Rect& a, const Rect& b) {
    double x0 = std::max(a.minX(), b.minX());
    double y0 = std::max(a.minY(), b.minY());
    double x1 = std::min(a.maxX(), b.maxX());
    double y1 = std::min(a.maxY(), b.maxY());
    if (x1 < x0 || y1 < y0) return {};
    return {false, {x0, y0, x1 - x0, y1 - y0}};
}

// Whether the pointer at `p` is over `r`, both in bottom-left coordinates.
// The bottom and right edges are outside, the top and left ones inside, so a
// pointer on the seam between two screens is over exactly one of them.
inline bool pointerIn(const Point& p, const Rect& r) {
    return p.x >= r.minX() && p.x < r.maxX() && p.y > r.minY() && p.y <= r.maxY();
}

} // namespace tarnwick
