#pragma once

#include "base/Geometry.h"

#include <variant>
#include <vector>

namespace tarnwick {

// One step of an outline, in the view's top-left space (y grows downwards).
struct PathSegment {
    enum class Kind { move, line, quad, close };
    Kind kind = Kind::move;
    Point to;
    Point control; // quad only
    bool operator==(const PathSegment&) const = default;
};

// The outline of a card that grows out of the camera housing: two concave
// ears flare from the screen's top edge into the card's sides, and the
// bottom corners are rounded.
struct NotchShape {
    double top = 0;    // the ears' radius
    double bottom = 0; // the bottom corners' radius
    // Never leaves `rect`: a rectangle too small for the ears or the corners
    // gets smaller ones (none at all when there is no room).
    std::vector<PathSegment> path(const Rect& rect) const;
    bool operator==(const NotchShape&) const = default;
};

// A free-standing island on a screen without a camera housing: a rounded
// rectangle with a faint outline.
struct RoundedShape {
    double radius = 0;
    double strokeOpacity = 0.1;
    bool operator==(const RoundedShape&) const = default;
};

using IslandShape = std::variant<NotchShape, RoundedShape>;

// The island's clip: the corners tighten while it is tucked in.
IslandShape islandShape(bool notched, double ear, bool expanded);

} // namespace tarnwick
