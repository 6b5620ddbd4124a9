#include "island/NotchShape.h"

#include <algorithm>

namespace tarnwick {

std::vector<PathSegment> NotchShape::path(const Rect& rect) const {
    using K = PathSegment::Kind;
    const double minX = rect.minX(), minY = rect.minY(), maxX = rect.maxX(), maxY = rect.maxY();
    const double w = rect.width(), h = rect.height();
    // The ears may not reach below the bottom or past the middle; in a roomy
    // rectangle both equal `top`.
    const double tx = std::clamp(top, 0.0, w * 0.5);
    const double ty = std::clamp(top, 0.0, h);
    const double r = std::max(0.0, std::min({bottom, (h - ty) * 0.5, (w - 2 * tx) * 0.5}));
    return {
        {K::move, {minX, minY}, {}},
        {K::quad, {minX + tx, minY + ty}, {minX + tx, minY}},
        {K::line, {minX + tx, maxY - r}, {}},
        {K::quad, {minX + tx + r, maxY}, {minX + tx, maxY}},
        {K::line, {maxX - tx - r, maxY}, {}},
        {K::quad, {maxX - tx, maxY - r}, {maxX - tx, maxY}},
        {K::line, {maxX - tx, minY + ty}, {}},
        {K::quad, {maxX, minY}, {maxX - tx, minY}},
        {K::close, {}, {}},
    };
}

IslandShape islandShape(bool notched, double ear, bool expanded) {
    if (notched) return NotchShape{ear, expanded ? 30.0 : 10.0};
    return RoundedShape{expanded ? 28.0 : 17.0};
}

} // namespace tarnwick
