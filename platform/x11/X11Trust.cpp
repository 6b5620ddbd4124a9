#include "platform/x11/X11Trust.h"

#include "ports/TrustProbe.h"

#include <cstdlib>
#include <cstring>

namespace tarnwick::x11 {

std::string untrustedReason(const char* sessionType, const char* waylandDisplay,
                            bool windowManagerPresent) {
    if ((sessionType && std::strcmp(sessionType, "wayland") == 0) ||
        (waylandDisplay && *waylandDisplay))
        return "this is a Wayland session: other applications' windows cannot be moved from X11";
    if (!windowManagerPresent)
        return "no EWMH window manager is running: nobody would move the windows";
    return "";
}

bool X11Trust::windowManagerPresent() {
    // The check window names itself, so a stale property left by a window
    // manager that died does not count.
    auto& ewmh = x_.ewmh();
    xcb_window_t check = XCB_NONE, self = XCB_NONE;
    if (!xcb_ewmh_get_supporting_wm_check_reply(
            &ewmh, xcb_ewmh_get_supporting_wm_check(&ewmh, x_.root()), &check, nullptr))
        return false;
    if (!xcb_ewmh_get_supporting_wm_check_reply(
            &ewmh, xcb_ewmh_get_supporting_wm_check(&ewmh, check), &self, nullptr))
        return false;
    return self == check;
}

bool X11Trust::isProcessTrusted() {
    const auto reason = untrustedReason(std::getenv("XDG_SESSION_TYPE"),
                                        std::getenv("WAYLAND_DISPLAY"), windowManagerPresent());
    std::lock_guard lock(mutex_);
    if (reason != lastReason_ && !reason.empty()) log_.line("Cannot move other windows: " + reason);
    lastReason_ = reason;
    return reason.empty();
}

int32_t X11Trust::probe() {
    return isProcessTrusted() ? axSuccess : axAPIDisabled;
}

void X11Trust::requestWithPrompt() {
    log_.line("X11 asks no approval: Tarnwick needs an X11 session with an EWMH window manager");
}

} // namespace tarnwick::x11
