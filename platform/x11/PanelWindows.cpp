#include "platform/x11/PanelWindows.h"

namespace tarnwick::x11 {

void showOnEveryWorkspace(XConnection& x, uint32_t window) {
    xcb_ewmh_set_wm_desktop(&x.ewmh(), window, 0xFFFFFFFF);
    xcb_atom_t sticky = x.ewmh()._NET_WM_STATE_STICKY;
    xcb_ewmh_set_wm_state(&x.ewmh(), window, 1, &sticky);
    xcb_flush(x.get());
}

bool compositing(XConnection& x) {
    // The manager of screen N owns the selection _NET_WM_CM_Sn.
    const auto cookie = xcb_ewmh_get_wm_cm_owner(&x.ewmh(), x.screenNumber());
    xcb_window_t owner = XCB_NONE;
    if (!xcb_ewmh_get_wm_cm_owner_reply(&x.ewmh(), cookie, &owner, nullptr)) return false;
    return owner != XCB_NONE;
}

} // namespace tarnwick::x11
