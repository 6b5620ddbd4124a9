#pragma once

#include "platform/x11/XConnection.h"

#include <array>
#include <cstdint>
#include <optional>

namespace tarnwick::x11 {

// Asks the window manager to show `window` on every workspace; set before
// the window is first mapped, so that it needs no message. The window is
// also typed a notification, which is what compositors go by.
void showOnEveryWorkspace(XConnection& x, uint32_t window);

// Whether a compositing manager runs: without one, transparent pixels of a
// window are drawn black, so the island cuts its window to its outline.
bool compositing(XConnection& x);

// What the window manager puts around `window` (left, right, top, bottom),
// also before it is first mapped: asked with _NET_REQUEST_FRAME_EXTENTS and
// waited for up to `waitMs`; nothing when no answer comes.
std::optional<std::array<uint32_t, 4>> frameExtents(XConnection& x, uint32_t window, int waitMs);

} // namespace tarnwick::x11
