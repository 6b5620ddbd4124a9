#pragma once

#include <xcb/randr.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <memory>
#include <string>

namespace tarnwick::x11 {

// Atoms the platform needs beyond the EWMH set that xcb-ewmh interns.
struct ExtraAtoms {
    xcb_atom_t gtkApplicationId = XCB_NONE;
    xcb_atom_t kdeDesktopFile = XCB_NONE;
    xcb_atom_t edid = XCB_NONE;
    xcb_atom_t connectorType = XCB_NONE;
    xcb_atom_t panel = XCB_NONE;
    xcb_atom_t utf8String = XCB_NONE;
};

// One connection to the X server with the EWMH atoms interned. libxcb is
// thread-safe, but the platform still gives background window work a
// connection of its own so that a long listing never delays the main
// thread's event handling.
class XConnection {
  public:
    // nullptr with `error` set when the display cannot be opened.
    static std::unique_ptr<XConnection> open(const char* display, std::string& error);
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    xcb_connection_t* get() const { return c_; }
    xcb_window_t root() const { return screen_->root; }
    xcb_screen_t* screen() const { return screen_; }
    int screenNumber() const { return screenNumber_; }
    xcb_ewmh_connection_t& ewmh() { return ewmh_; }
    const ExtraAtoms& atoms() const { return atoms_; }
    bool randr15() const { return randr15_; }
    // The server went away or the connection broke: nothing more will work.
    bool broken() const { return xcb_connection_has_error(c_) != 0; }

    // Name of an atom, or "" when it cannot be read. One round trip.
    std::string atomName(xcb_atom_t atom);

  private:
    XConnection() = default;
    xcb_connection_t* c_ = nullptr;
    xcb_screen_t* screen_ = nullptr;
    int screenNumber_ = 0;
    xcb_ewmh_connection_t ewmh_{};
    bool ewmhReady_ = false;
    ExtraAtoms atoms_;
    bool randr15_ = false;
};

// The text of a reply's error, for log lines: "BadWindow (3)".
std::string describeError(const xcb_generic_error_t* error);

// Frees an xcb reply or error when it goes out of scope.
struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
};
template <typename T> using Reply = std::unique_ptr<T, FreeDeleter>;

} // namespace tarnwick::x11
