#include "platform/x11/XConnection.h"

#include <cstdlib>
#include <cstring>

namespace tarnwick::x11 {

std::unique_ptr<XConnection> XConnection::open(const char* display, std::string& error) {
    std::unique_ptr<XConnection> x(new XConnection);
    x->c_ = xcb_connect(display, &x->screenNumber_);
    if (!x->c_ || xcb_connection_has_error(x->c_)) {
        const char* name = display ? display : std::getenv("DISPLAY");
        error = std::string("cannot open the X display ") + (name ? name : "(DISPLAY is not set)");
        return nullptr;
    }
    auto it = xcb_setup_roots_iterator(xcb_get_setup(x->c_));
    for (int i = 0; i < x->screenNumber_ && it.rem; ++i)
        xcb_screen_next(&it);
    x->screen_ = it.data;
    if (!x->screen_) {
        error = "the X server offers no screen";
        return nullptr;
    }

    // Every atom and the RandR version in one go: the replies are read after
    // all requests are out.
    auto* ewmhCookies = xcb_ewmh_init_atoms(x->c_, &x->ewmh_);
    const char* names[] = {
        "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE", "EDID", "ConnectorType", "Panel",
        "UTF8_STRING"};
    xcb_intern_atom_cookie_t cookies[std::size(names)];
    for (size_t i = 0; i < std::size(names); ++i)
        cookies[i] =
            xcb_intern_atom(x->c_, 0, static_cast<uint16_t>(std::strlen(names[i])), names[i]);
    auto randrCookie = xcb_randr_query_version(x->c_, 1, 5);

    x->ewmhReady_ = xcb_ewmh_init_atoms_replies(&x->ewmh_, ewmhCookies, nullptr) != 0;
    xcb_atom_t* slots[] = {
        &x->atoms_.gtkApplicationId, &x->atoms_.kdeDesktopFile, &x->atoms_.edid,
        &x->atoms_.connectorType,    &x->atoms_.panel,          &x->atoms_.utf8String};
    for (size_t i = 0; i < std::size(names); ++i) {
        Reply<xcb_intern_atom_reply_t> r(xcb_intern_atom_reply(x->c_, cookies[i], nullptr));
        if (r) *slots[i] = r->atom;
    }
    xcb_generic_error_t* err = nullptr;
    Reply<xcb_randr_query_version_reply_t> version(
        xcb_randr_query_version_reply(x->c_, randrCookie, &err));
    std::free(err);
    x->randr15_ = version && (version->major_version > 1 ||
                              (version->major_version == 1 && version->minor_version >= 5));
    if (!x->ewmhReady_) {
        error = "cannot intern the window manager's atoms";
        return nullptr;
    }
    return x;
}

XConnection::~XConnection() {
    if (ewmhReady_) xcb_ewmh_connection_wipe(&ewmh_);
    if (c_) xcb_disconnect(c_);
}

std::string XConnection::atomName(xcb_atom_t atom) {
    if (atom == XCB_NONE) return "";
    Reply<xcb_get_atom_name_reply_t> r(
        xcb_get_atom_name_reply(c_, xcb_get_atom_name(c_, atom), nullptr));
    if (!r) return "";
    return std::string(xcb_get_atom_name_name(r.get()),
                       static_cast<size_t>(xcb_get_atom_name_name_length(r.get())));
}

std::string describeError(const xcb_generic_error_t* error) {
    if (!error) return "no error";
    static const char* names[] = {
        "Success",   "BadRequest", "BadValue",    "BadWindow",   "BadPixmap", "BadAtom",
        "BadCursor", "BadFont",    "BadMatch",    "BadDrawable", "BadAccess", "BadAlloc",
        "BadColor",  "BadGC",      "BadIDChoice", "BadName",     "BadLength", "BadImplementation"};
    const auto code = error->error_code;
    std::string name = code < std::size(names) ? names[code] : "error";
    return name + " (" + std::to_string(code) + ") on request " +
           std::to_string(error->major_code) + "." + std::to_string(error->minor_code);
}

} // namespace tarnwick::x11
