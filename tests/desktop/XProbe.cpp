// tarnwick-xprobe: what the window manager and the X server show, for tests.
//
//   tarnwick-xprobe [list]        every managed window:
//                                 0xID PID "CLASS" "TITLE" X Y W H STATES
//   tarnwick-xprobe frame ID      the same line for one window; exit 1 when it is gone
//   tarnwick-xprobe monitors      NAME X Y W H primary|-   (RandR monitors)
//   tarnwick-xprobe wait-frame ID X Y W H TIMEOUT [SLACK]
//                                 exit 0 once the frame is there (each edge within
//                                 SLACK pixels, default 0), else print the last line, exit 1
//   tarnwick-xprobe wait-monitor NAME present|absent TIMEOUT
//                                 exit 0 once it is so, printing the wall-clock time
//                                 in ms when it was first seen ("seen MS")
//   tarnwick-xprobe top-at X Y    the topmost window shown at that point of the root:
//                                 0xID PID, ID the client (a frame's window, or an
//                                 unmanaged window itself), PID its _NET_WM_PID or 0
//   tarnwick-xprobe hints ID      min WxH max WxH actions A,B,...: WM_NORMAL_HINTS'
//                                 minimum and maximum size (0x0 when unset) and the
//                                 window manager's _NET_WM_ALLOWED_ACTIONS, lower case
//                                 without the prefix ("move,resize,close")
//
// X Y W H is the frame, decorations included, in root coordinates: what the
// user sees, and what a window mover asks for. STATES is a comma list of
// maximized, fullscreen, hidden, or "-".
#include <xcb/randr.h>
#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>
#include <xcb/xcb_icccm.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace {

struct Probe {
    xcb_connection_t* c = nullptr;
    xcb_window_t root = XCB_NONE;
    xcb_ewmh_connection_t ewmh{};
};

struct Frame {
    int x = 0, y = 0, w = 0, h = 0;
};

// A window may vanish between any two requests: every reply is checked and
// its error dropped, and a vanished window simply has no line.
template <typename Reply> struct Owned {
    Reply* r;
    explicit Owned(Reply* reply)
        : r(reply) {}
    ~Owned() { std::free(r); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    Reply* operator->() const { return r; }
    explicit operator bool() const { return r != nullptr; }
};

template <typename Reply> Owned<Reply> checked(Reply* reply, xcb_generic_error_t* err) {
    std::free(err);
    return Owned<Reply>(reply);
}

std::string quoted(const std::string& s) {
    std::string out = "\"";
    for (char ch : s) {
        if (ch == '"' || ch == '\\') out += '\\';
        if (ch == '\n') {
            out += "\\n";
            continue;
        }
        out += ch;
    }
    return out + '"';
}

std::optional<std::string> textProperty(Probe& p, xcb_window_t w, xcb_atom_t atom) {
    xcb_generic_error_t* err = nullptr;
    auto r = checked(
        xcb_get_property_reply(p.c, xcb_get_property(p.c, 0, w, atom, XCB_ATOM_ANY, 0, 1024), &err),
        err);
    if (!r || r->type == XCB_ATOM_NONE) return std::nullopt;
    auto* data = static_cast<const char*>(xcb_get_property_value(r.r));
    return std::string(data, xcb_get_property_value_length(r.r));
}

std::optional<Frame> frameOf(Probe& p, xcb_window_t w) {
    xcb_generic_error_t* err = nullptr;
    auto geo = checked(xcb_get_geometry_reply(p.c, xcb_get_geometry(p.c, w), &err), err);
    if (!geo) return std::nullopt;
    auto at = checked(
        xcb_translate_coordinates_reply(p.c, xcb_translate_coordinates(p.c, w, p.root, 0, 0), &err),
        err);
    if (!at) return std::nullopt;
    xcb_ewmh_get_extents_reply_t ext{};
    if (!xcb_ewmh_get_frame_extents_reply(&p.ewmh, xcb_ewmh_get_frame_extents(&p.ewmh, w), &ext,
                                          &err)) {
        std::free(err);
        ext = {};
    }
    return Frame{at->dst_x - int(ext.left), at->dst_y - int(ext.top),
                 geo->width + int(ext.left + ext.right), geo->height + int(ext.top + ext.bottom)};
}

std::string statesOf(Probe& p, xcb_window_t w) {
    xcb_ewmh_get_atoms_reply_t atoms{};
    xcb_generic_error_t* err = nullptr;
    if (!xcb_ewmh_get_wm_state_reply(&p.ewmh, xcb_ewmh_get_wm_state(&p.ewmh, w), &atoms, &err)) {
        std::free(err);
        return "-";
    }
    bool vert = false, horz = false, full = false, hidden = false;
    for (uint32_t i = 0; i < atoms.atoms_len; ++i) {
        xcb_atom_t a = atoms.atoms[i];
        vert |= a == p.ewmh._NET_WM_STATE_MAXIMIZED_VERT;
        horz |= a == p.ewmh._NET_WM_STATE_MAXIMIZED_HORZ;
        full |= a == p.ewmh._NET_WM_STATE_FULLSCREEN;
        hidden |= a == p.ewmh._NET_WM_STATE_HIDDEN;
    }
    xcb_ewmh_get_atoms_reply_wipe(&atoms);
    std::string out;
    auto add = [&](const char* s) { out += (out.empty() ? "" : ",") + std::string(s); };
    if (vert && horz) add("maximized");
    if (full) add("fullscreen");
    if (hidden) add("hidden");
    return out.empty() ? "-" : out;
}

std::optional<std::string> lineOf(Probe& p, xcb_window_t w) {
    auto frame = frameOf(p, w);
    if (!frame) return std::nullopt;
    uint32_t pid = 0;
    xcb_generic_error_t* err = nullptr;
    if (!xcb_ewmh_get_wm_pid_reply(&p.ewmh, xcb_ewmh_get_wm_pid(&p.ewmh, w), &pid, &err))
        std::free(err);
    std::string cls;
    if (auto raw = textProperty(p, w, XCB_ATOM_WM_CLASS)) {
        // "instance\0class\0": the class is the second string.
        auto nul = raw->find('\0');
        if (nul != std::string::npos) cls = raw->substr(nul + 1);
        if (!cls.empty() && cls.back() == '\0') cls.pop_back();
    }
    std::string title = textProperty(p, w, p.ewmh._NET_WM_NAME)
                            .value_or(textProperty(p, w, XCB_ATOM_WM_NAME).value_or(""));
    char head[64];
    std::snprintf(head, sizeof head, "0x%08x %u ", w, pid);
    char geo[80];
    std::snprintf(geo, sizeof geo, " %d %d %d %d ", frame->x, frame->y, frame->w, frame->h);
    return head + quoted(cls) + " " + quoted(title) + geo + statesOf(p, w);
}

std::vector<xcb_window_t> clients(Probe& p) {
    xcb_ewmh_get_windows_reply_t list{};
    xcb_generic_error_t* err = nullptr;
    if (!xcb_ewmh_get_client_list_reply(&p.ewmh, xcb_ewmh_get_client_list(&p.ewmh, 0), &list,
                                        &err)) {
        std::free(err);
        return {};
    }
    std::vector<xcb_window_t> out(list.windows, list.windows + list.windows_len);
    xcb_ewmh_get_windows_reply_wipe(&list);
    return out;
}

struct Monitor {
    std::string name;
    int x, y, w, h;
    bool primary;
};

std::vector<Monitor> monitors(Probe& p) {
    xcb_generic_error_t* err = nullptr;
    auto r = checked(
        xcb_randr_get_monitors_reply(p.c, xcb_randr_get_monitors(p.c, p.root, 1), &err), err);
    std::vector<Monitor> out;
    if (!r) return out;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(r.r); it.rem;
         xcb_randr_monitor_info_next(&it)) {
        auto name =
            checked(xcb_get_atom_name_reply(p.c, xcb_get_atom_name(p.c, it.data->name), &err), err);
        std::string n = name ? std::string(xcb_get_atom_name_name(name.r),
                                           xcb_get_atom_name_name_length(name.r))
                             : "?";
        out.push_back(
            {n, it.data->x, it.data->y, it.data->width, it.data->height, bool(it.data->primary)});
    }
    return out;
}

bool hasWmState(Probe& p, xcb_window_t w, xcb_atom_t wmState) {
    xcb_generic_error_t* err = nullptr;
    auto r = checked(
        xcb_get_property_reply(p.c, xcb_get_property(p.c, 0, w, wmState, XCB_ATOM_ANY, 0, 0), &err),
        err);
    return r && r->type != XCB_ATOM_NONE;
}

// The window under a frame that the window manager marks with WM_STATE, or
// `w` itself (an unmanaged window, or one managed without a frame).
xcb_window_t clientIn(Probe& p, xcb_window_t w, xcb_atom_t wmState) {
    if (hasWmState(p, w, wmState)) return w;
    xcb_generic_error_t* err = nullptr;
    auto tree = checked(xcb_query_tree_reply(p.c, xcb_query_tree(p.c, w), &err), err);
    if (!tree) return w;
    auto* kids = xcb_query_tree_children(tree.r);
    for (int i = xcb_query_tree_children_length(tree.r) - 1; i >= 0; --i) {
        const xcb_window_t found = clientIn(p, kids[i], wmState);
        if (hasWmState(p, found, wmState)) return found;
    }
    return w;
}

// The root's children are listed bottom to top: the last one shown that
// covers the point is what the user sees there.
int topAt(Probe& p, int x, int y) {
    xcb_generic_error_t* err = nullptr;
    auto tree = checked(xcb_query_tree_reply(p.c, xcb_query_tree(p.c, p.root), &err), err);
    if (!tree) return 1;
    const char name[] = "WM_STATE";
    auto atom = checked(
        xcb_intern_atom_reply(p.c, xcb_intern_atom(p.c, 0, sizeof name - 1, name), &err), err);
    const xcb_atom_t wmState = atom ? atom->atom : xcb_atom_t(XCB_ATOM_NONE);
    auto* kids = xcb_query_tree_children(tree.r);
    for (int i = xcb_query_tree_children_length(tree.r) - 1; i >= 0; --i) {
        auto attrs = checked(
            xcb_get_window_attributes_reply(p.c, xcb_get_window_attributes(p.c, kids[i]), &err),
            err);
        if (!attrs || attrs->map_state != XCB_MAP_STATE_VIEWABLE ||
            attrs->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        auto geo = checked(xcb_get_geometry_reply(p.c, xcb_get_geometry(p.c, kids[i]), &err), err);
        if (!geo || x < geo->x || y < geo->y || x >= geo->x + geo->width + 2 * geo->border_width ||
            y >= geo->y + geo->height + 2 * geo->border_width)
            continue;
        const xcb_window_t client = clientIn(p, kids[i], wmState);
        uint32_t pid = 0;
        if (!xcb_ewmh_get_wm_pid_reply(&p.ewmh, xcb_ewmh_get_wm_pid(&p.ewmh, client), &pid, &err))
            std::free(err);
        std::printf("0x%08x %u\n", client, pid);
        return 0;
    }
    return 1;
}

int hints(Probe& p, xcb_window_t w) {
    xcb_generic_error_t* err = nullptr;
    xcb_size_hints_t size{};
    if (!xcb_icccm_get_wm_normal_hints_reply(p.c, xcb_icccm_get_wm_normal_hints(p.c, w), &size,
                                             &err)) {
        std::free(err);
        return 1;
    }
    const bool hasMin = size.flags & XCB_ICCCM_SIZE_HINT_P_MIN_SIZE;
    const bool hasMax = size.flags & XCB_ICCCM_SIZE_HINT_P_MAX_SIZE;
    std::string actions;
    xcb_ewmh_get_atoms_reply_t atoms{};
    if (xcb_ewmh_get_wm_allowed_actions_reply(&p.ewmh, xcb_ewmh_get_wm_allowed_actions(&p.ewmh, w),
                                              &atoms, &err)) {
        for (uint32_t i = 0; i < atoms.atoms_len; ++i) {
            auto name = checked(
                xcb_get_atom_name_reply(p.c, xcb_get_atom_name(p.c, atoms.atoms[i]), &err), err);
            if (!name) continue;
            std::string n(xcb_get_atom_name_name(name.r), xcb_get_atom_name_name_length(name.r));
            const std::string prefix = "_NET_WM_ACTION_";
            if (n.compare(0, prefix.size(), prefix) == 0) n = n.substr(prefix.size());
            for (auto& ch : n)
                ch = char(std::tolower(static_cast<unsigned char>(ch)));
            actions += (actions.empty() ? "" : ",") + n;
        }
        xcb_ewmh_get_atoms_reply_wipe(&atoms);
    } else {
        std::free(err);
    }
    std::printf("min %dx%d max %dx%d actions %s\n", hasMin ? size.min_width : 0,
                hasMin ? size.min_height : 0, hasMax ? size.max_width : 0,
                hasMax ? size.max_height : 0, actions.empty() ? "-" : actions.c_str());
    return 0;
}

using Clock = std::chrono::steady_clock;

Clock::time_point deadlineAfter(const char* seconds) {
    return Clock::now() + std::chrono::milliseconds(long(std::atof(seconds) * 1000));
}

long wallMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

int waitFrame(Probe& p, xcb_window_t w, const Frame& want, const char* timeout, int slack) {
    auto deadline = deadlineAfter(timeout);
    std::optional<Frame> last;
    for (;;) {
        last = frameOf(p, w);
        if (last && std::abs(last->x - want.x) <= slack && std::abs(last->y - want.y) <= slack &&
            std::abs(last->w - want.w) <= slack && std::abs(last->h - want.h) <= slack)
            return 0;
        if (Clock::now() >= deadline) break;
        struct timespec nap {
            0, 20'000'000
        };
        nanosleep(&nap, nullptr);
    }
    auto line = lineOf(p, w);
    std::printf("%s\n", line ? line->c_str() : "gone");
    return 1;
}

// Waits on RandR's own events rather than polling, so the time it prints is
// the time a client that listens would have heard of the change.
int waitMonitor(Probe& p, const std::string& name, bool present, const char* timeout) {
    auto ext = xcb_get_extension_data(p.c, &xcb_randr_id);
    if (!ext || !ext->present) return 2;
    xcb_randr_select_input(p.c, p.root,
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    xcb_flush(p.c);
    auto deadline = deadlineAfter(timeout);
    for (;;) {
        bool there = false;
        for (const auto& m : monitors(p))
            there |= m.name == name;
        if (there == present) {
            std::printf("seen %ld\n", wallMs());
            return 0;
        }
        if (Clock::now() >= deadline) return 1;
        // An event, or a look every 100 ms: the monitor list can follow the
        // events it belongs to a little later.
        if (auto* e = xcb_poll_for_event(p.c)) {
            std::free(e);
            continue;
        }
        struct timespec nap {
            0, 2'000'000
        };
        for (int i = 0; i < 50; ++i) {
            if (auto* e = xcb_poll_for_event(p.c)) {
                std::free(e);
                break;
            }
            nanosleep(&nap, nullptr);
        }
    }
}

[[noreturn]] void usage() {
    std::fprintf(stderr, "usage: tarnwick-xprobe [list | frame ID | monitors | wait-frame ID X Y W "
                         "H TIMEOUT [SLACK] | wait-monitor NAME present|absent TIMEOUT | top-at X "
                         "Y | hints ID]\n");
    std::exit(2);
}

xcb_window_t windowArg(const char* s) {
    char* end = nullptr;
    unsigned long v = std::strtoul(s, &end, 0);
    if (!end || *end || v == 0) usage();
    return xcb_window_t(v);
}

} // namespace

int main(int argc, char** argv) {
    Probe p;
    p.c = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(p.c)) {
        std::fprintf(stderr, "tarnwick-xprobe: cannot open the display\n");
        return 2;
    }
    p.root = xcb_setup_roots_iterator(xcb_get_setup(p.c)).data->root;
    if (!xcb_ewmh_init_atoms_replies(&p.ewmh, xcb_ewmh_init_atoms(p.c, &p.ewmh), nullptr)) return 2;

    std::string cmd = argc > 1 ? argv[1] : "list";
    int rc = 0;
    if (cmd == "list" && argc <= 2) {
        for (xcb_window_t w : clients(p))
            if (auto line = lineOf(p, w)) std::printf("%s\n", line->c_str());
    } else if (cmd == "frame" && argc == 3) {
        auto line = lineOf(p, windowArg(argv[2]));
        if (line)
            std::printf("%s\n", line->c_str());
        else
            rc = 1;
    } else if (cmd == "monitors" && argc == 2) {
        for (const auto& m : monitors(p))
            std::printf("%s %d %d %d %d %s\n", m.name.c_str(), m.x, m.y, m.w, m.h,
                        m.primary ? "primary" : "-");
    } else if (cmd == "wait-frame" && (argc == 8 || argc == 9)) {
        Frame want{std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5]), std::atoi(argv[6])};
        rc = waitFrame(p, windowArg(argv[2]), want, argv[7], argc == 9 ? std::atoi(argv[8]) : 0);
    } else if (cmd == "wait-monitor" && argc == 5) {
        std::string mode = argv[3];
        if (mode != "present" && mode != "absent") usage();
        rc = waitMonitor(p, argv[2], mode == "present", argv[4]);
    } else if (cmd == "top-at" && argc == 4) {
        rc = topAt(p, std::atoi(argv[2]), std::atoi(argv[3]));
    } else if (cmd == "hints" && argc == 3) {
        rc = hints(p, windowArg(argv[2]));
    } else {
        usage();
    }
    std::fflush(stdout);
    xcb_ewmh_connection_wipe(&p.ewmh);
    xcb_disconnect(p.c);
    return rc;
}
