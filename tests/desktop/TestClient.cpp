// tarnwick-testclient: an ordinary application for the test desktop. It shows
// one or more plain windows with the properties a window list reads, and then
// waits until it is killed or every window is closed.
//
//   tarnwick-testclient --title T --class INSTANCE,CLASS --geometry WxH+X+Y
//       [--maximized] [--fullscreen] [--minimized] [--dialog] [--count N] [--utf8-title]
//       [--exit-when-moved]
//
// It prints the id of each window (hex, one a line) once the window manager
// has taken it in, so a test that reads the ids knows the windows are managed.
// With --exit-when-moved the process quits the moment anyone moves or resizes
// one of its windows, so its other windows vanish in the middle of a move.
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

struct Options {
    std::string title = "Test window";
    std::string instance = "testclient";
    std::string className = "TestClient";
    int w = 640, h = 480, x = 0, y = 0;
    bool maximized = false, fullscreen = false, minimized = false, dialog = false, utf8 = false;
    bool exitWhenMoved = false;
    int count = 1;
};

[[noreturn]] void usage(const char* why) {
    std::fprintf(stderr,
                 "tarnwick-testclient: %s\nusage: tarnwick-testclient --title T --class "
                 "INSTANCE,CLASS --geometry WxH+X+Y [--maximized] [--fullscreen] [--minimized] "
                 "[--dialog] [--count N] [--utf8-title] [--exit-when-moved]\n",
                 why);
    std::exit(2);
}

Options parse(int argc, char** argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        auto value = [&]() -> std::string {
            if (i + 1 >= argc) usage(("missing value after " + a).c_str());
            return argv[++i];
        };
        if (a == "--title") {
            o.title = value();
        } else if (a == "--class") {
            std::string v = value();
            auto comma = v.find(',');
            if (comma == std::string::npos) usage("--class takes INSTANCE,CLASS");
            o.instance = v.substr(0, comma);
            o.className = v.substr(comma + 1);
        } else if (a == "--geometry") {
            std::string v = value();
            char sx = 0, sy = 0;
            if (std::sscanf(v.c_str(), "%dx%d%c%d%c%d", &o.w, &o.h, &sx, &o.x, &sy, &o.y) != 6 ||
                (sx != '+' && sx != '-') || (sy != '+' && sy != '-') || o.w <= 0 || o.h <= 0)
                usage("--geometry takes WxH+X+Y");
            if (sx == '-') o.x = -o.x;
            if (sy == '-') o.y = -o.y;
        } else if (a == "--count") {
            o.count = std::atoi(value().c_str());
            if (o.count < 1) usage("--count takes a positive number");
        } else if (a == "--maximized") {
            o.maximized = true;
        } else if (a == "--fullscreen") {
            o.fullscreen = true;
        } else if (a == "--minimized") {
            o.minimized = true;
        } else if (a == "--dialog") {
            o.dialog = true;
        } else if (a == "--utf8-title") {
            o.utf8 = true;
        } else if (a == "--exit-when-moved") {
            o.exitWhenMoved = true;
        } else {
            usage(("unknown argument " + a).c_str());
        }
    }
    return o;
}

xcb_atom_t intern(xcb_connection_t* c, const char* name) {
    auto* r = xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, std::strlen(name), name), nullptr);
    xcb_atom_t a = r ? r->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(r);
    return a;
}

struct Client {
    xcb_connection_t* c;
    xcb_screen_t* screen;
    xcb_ewmh_connection_t ewmh;
    xcb_atom_t wmProtocols, wmDelete, wmState, utf8String;
    std::string host;
};

void setTitle(Client& k, xcb_window_t w, const std::string& title) {
    xcb_ewmh_set_wm_name(&k.ewmh, w, title.size(), title.data());
    // Old clients put Latin-1 in WM_NAME; a title outside it goes as UTF8_STRING,
    // which is what toolkits do and what a window list has to cope with.
    bool ascii = true;
    for (unsigned char ch : title)
        if (ch >= 0x80) ascii = false;
    xcb_change_property(k.c, XCB_PROP_MODE_REPLACE, w, XCB_ATOM_WM_NAME,
                        ascii ? xcb_atom_t(XCB_ATOM_STRING) : k.utf8String, 8, title.size(),
                        title.data());
}

xcb_window_t makeWindow(Client& k, const Options& o, const std::string& title, int x, int y, int w,
                        int h, bool dialog, xcb_window_t parent, int index) {
    xcb_window_t win = xcb_generate_id(k.c);
    // Distinct colours make screenshots of the desktop readable.
    static const uint32_t colours[] = {0x4a7fb5, 0xc0504d, 0x9bbb59, 0x8064a2,
                                       0xf79646, 0x4bacc6, 0x7f7f7f, 0xd4a017};
    uint32_t colour = colours[(getpid() + index) % 8];
    uint32_t values[] = {colour, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(k.c, XCB_COPY_FROM_PARENT, win, k.screen->root, x, y, w, h, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, k.screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);

    std::string wmClass = o.instance + '\0' + o.className + '\0';
    xcb_icccm_set_wm_class(k.c, win, wmClass.size(), wmClass.data());
    setTitle(k, win, title);
    xcb_ewmh_set_wm_pid(&k.ewmh, win, getpid());
    xcb_icccm_set_wm_client_machine(k.c, win, XCB_ATOM_STRING, 8, k.host.size(), k.host.data());
    xcb_icccm_set_wm_protocols(k.c, win, k.wmProtocols, 1, &k.wmDelete);

    xcb_atom_t type =
        dialog ? k.ewmh._NET_WM_WINDOW_TYPE_DIALOG : k.ewmh._NET_WM_WINDOW_TYPE_NORMAL;
    xcb_ewmh_set_wm_window_type(&k.ewmh, win, 1, &type);
    if (dialog) xcb_icccm_set_wm_transient_for(k.c, win, parent);

    // A user-given position, so the window manager puts the window where the
    // test asked instead of cascading it.
    xcb_size_hints_t size{};
    xcb_icccm_size_hints_set_position(&size, 1, x, y);
    xcb_icccm_size_hints_set_size(&size, 1, w, h);
    xcb_icccm_size_hints_set_win_gravity(&size, XCB_GRAVITY_NORTH_WEST);
    xcb_icccm_set_wm_normal_hints(k.c, win, &size);

    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 1);
    if (o.minimized && !dialog)
        xcb_icccm_wm_hints_set_iconic(&hints);
    else
        xcb_icccm_wm_hints_set_normal(&hints);
    xcb_icccm_set_wm_hints(k.c, win, &hints);

    std::vector<xcb_atom_t> states;
    if (o.maximized && !dialog) {
        states.push_back(k.ewmh._NET_WM_STATE_MAXIMIZED_VERT);
        states.push_back(k.ewmh._NET_WM_STATE_MAXIMIZED_HORZ);
    }
    if (o.fullscreen && !dialog) states.push_back(k.ewmh._NET_WM_STATE_FULLSCREEN);
    if (!states.empty()) xcb_ewmh_set_wm_state(&k.ewmh, win, states.size(), states.data());

    xcb_map_window(k.c, win);
    return win;
}

// The window manager writes WM_STATE when it takes a window in, minimised or not.
bool managed(Client& k, xcb_window_t w) {
    auto* r = xcb_get_property_reply(
        k.c, xcb_get_property(k.c, 0, w, k.wmState, XCB_ATOM_ANY, 0, 2), nullptr);
    bool yes = r && r->type != XCB_ATOM_NONE;
    std::free(r);
    return yes;
}

} // namespace

int main(int argc, char** argv) {
    Options o = parse(argc, argv);
    Client k{};
    k.c = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(k.c)) {
        std::fprintf(stderr, "tarnwick-testclient: cannot open the display\n");
        return 1;
    }
    k.screen = xcb_setup_roots_iterator(xcb_get_setup(k.c)).data;
    if (!xcb_ewmh_init_atoms_replies(&k.ewmh, xcb_ewmh_init_atoms(k.c, &k.ewmh), nullptr)) {
        std::fprintf(stderr, "tarnwick-testclient: cannot intern the EWMH atoms\n");
        return 1;
    }
    k.wmProtocols = intern(k.c, "WM_PROTOCOLS");
    k.wmDelete = intern(k.c, "WM_DELETE_WINDOW");
    k.wmState = intern(k.c, "WM_STATE");
    k.utf8String = intern(k.c, "UTF8_STRING");
    char host[256] = {};
    gethostname(host, sizeof host - 1);
    k.host = host;

    std::string base = o.title;
    if (o.utf8) base += " — Grüße, Привет ✓";
    std::vector<xcb_window_t> windows;
    for (int i = 0; i < o.count; ++i) {
        std::string title = o.count == 1 ? base : base + " " + std::to_string(i + 1);
        windows.push_back(makeWindow(k, o, title, o.x, o.y, o.w, o.h, false, XCB_NONE, i));
    }
    if (o.dialog)
        windows.push_back(makeWindow(k, o, base + " Dialog", o.x + 40, o.y + 40,
                                     std::max(o.w / 2, 50), std::max(o.h / 2, 50), true,
                                     windows.front(), o.count));
    xcb_flush(k.c);

    // Report the ids only once the window manager has every window, so callers
    // need no sleeps; without a window manager, give up waiting after a while.
    std::set<xcb_window_t> pending(windows.begin(), windows.end());
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!pending.empty() && std::chrono::steady_clock::now() < deadline) {
        for (auto it = pending.begin(); it != pending.end();)
            it = managed(k, *it) ? pending.erase(it) : std::next(it);
        if (!pending.empty()) usleep(10000);
    }
    if (!pending.empty())
        std::fprintf(stderr, "tarnwick-testclient: %zu window(s) not managed after 5 s\n",
                     pending.size());
    for (xcb_window_t w : windows)
        std::printf("0x%08x\n", w);
    std::fflush(stdout);

    // Where each window is now, as the window manager's synthetic
    // ConfigureNotify reports it: in root coordinates.
    std::map<xcb_window_t, std::array<int, 4>> placed;
    if (o.exitWhenMoved)
        for (xcb_window_t w : windows) {
            auto* at = xcb_translate_coordinates_reply(
                k.c, xcb_translate_coordinates(k.c, w, k.screen->root, 0, 0), nullptr);
            auto* geo = xcb_get_geometry_reply(k.c, xcb_get_geometry(k.c, w), nullptr);
            if (at && geo) placed[w] = {at->dst_x, at->dst_y, geo->width, geo->height};
            std::free(at);
            std::free(geo);
        }

    std::set<xcb_window_t> open(windows.begin(), windows.end());
    while (xcb_generic_event_t* e = xcb_wait_for_event(k.c)) {
        if (o.exitWhenMoved && (e->response_type & 0x7f) == XCB_CONFIGURE_NOTIFY) {
            auto* c = reinterpret_cast<xcb_configure_notify_event_t*>(e);
            auto it = placed.find(c->window);
            // Only the synthetic event carries root coordinates; the real
            // one is relative to the frame, and tells only of a new size.
            bool synthetic = e->response_type & 0x80;
            if (it != placed.end() &&
                (it->second[2] != c->width || it->second[3] != c->height ||
                 (synthetic && (it->second[0] != c->x || it->second[1] != c->y))))
                _exit(0); // no goodbye: the server drops the windows with the connection
        }
        if ((e->response_type & 0x7f) == XCB_CLIENT_MESSAGE) {
            auto* m = reinterpret_cast<xcb_client_message_event_t*>(e);
            if (m->type == k.wmProtocols && m->data.data32[0] == k.wmDelete &&
                open.erase(m->window)) {
                xcb_destroy_window(k.c, m->window);
                xcb_flush(k.c);
            }
        }
        std::free(e);
        if (open.empty()) break;
    }
    xcb_ewmh_connection_wipe(&k.ewmh);
    xcb_disconnect(k.c);
    return 0;
}
