#include "platform/x11/PanelWindows.h"

#include <chrono>
#include <thread>

namespace tarnwick::x11 {

void showOnEveryWorkspace(XConnection& x, uint32_t window) {
    xcb_ewmh_set_wm_desktop(&x.ewmh(), window, 0xFFFFFFFF);
    xcb_atom_t sticky = x.ewmh()._NET_WM_STATE_STICKY;
    xcb_ewmh_set_wm_state(&x.ewmh(), window, 1, &sticky);
    xcb_atom_t type = x.ewmh()._NET_WM_WINDOW_TYPE_NOTIFICATION;
    xcb_ewmh_set_wm_window_type(&x.ewmh(), window, 1, &type);
    xcb_flush(x.get());
}

bool compositing(XConnection& x) {
    // The manager of screen N owns the selection _NET_WM_CM_Sn.
    const auto cookie = xcb_ewmh_get_wm_cm_owner(&x.ewmh(), x.screenNumber());
    xcb_window_t owner = XCB_NONE;
    if (!xcb_ewmh_get_wm_cm_owner_reply(&x.ewmh(), cookie, &owner, nullptr)) return false;
    return owner != XCB_NONE;
}

std::optional<std::array<uint32_t, 4>> frameExtents(XConnection& x, uint32_t window, int waitMs) {
    auto read = [&]() -> std::optional<std::array<uint32_t, 4>> {
        xcb_ewmh_get_extents_reply_t e{};
        xcb_generic_error_t* err = nullptr;
        if (!xcb_ewmh_get_frame_extents_reply(
                &x.ewmh(), xcb_ewmh_get_frame_extents(&x.ewmh(), window), &e, &err)) {
            std::free(err);
            return std::nullopt;
        }
        return std::array<uint32_t, 4>{e.left, e.right, e.top, e.bottom};
    };
    if (auto known = read()) return known;
    xcb_ewmh_request_frame_extents(&x.ewmh(), x.screenNumber(), window);
    xcb_flush(x.get());
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(waitMs);
    while (std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        if (auto answered = read()) return answered;
    }
    return std::nullopt;
}

} // namespace tarnwick::x11
