#pragma once

#include "platform/x11/XConnection.h"

#include <cstdint>

namespace tarnwick::x11 {

// Asks the window manager to show `window` on every workspace; set before
// the window is first mapped, so that it needs no message.
void showOnEveryWorkspace(XConnection& x, uint32_t window);

// Whether a compositing manager runs: without one, transparent pixels of a
// window are drawn black, so the island cuts its window to its outline.
bool compositing(XConnection& x);

} // namespace tarnwick::x11
