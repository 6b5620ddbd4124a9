#include "platform/x11/X11Windows.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>
#include <unordered_set>

namespace tarnwick::x11 {

namespace {

struct Handle : WindowHandle {
    explicit Handle(xcb_window_t w)
        : window(w) {}
    xcb_window_t window;
};

xcb_window_t idOf(const WindowRef& ref) {
    auto* h = dynamic_cast<Handle*>(ref.get());
    return h ? h->window : XCB_NONE;
}

std::string propertyString(xcb_get_property_reply_t* r) {
    if (!r || r->format != 8) return "";
    return std::string(static_cast<const char*>(xcb_get_property_value(r)),
                       static_cast<size_t>(xcb_get_property_value_length(r)));
}

// Either direction counts: the window manager keeps such a window's size.
bool maximizedIn(const xcb_ewmh_connection_t& ewmh, const xcb_ewmh_get_atoms_reply_t& state) {
    for (uint32_t j = 0; j < state.atoms_len; ++j)
        if (state.atoms[j] == ewmh._NET_WM_STATE_MAXIMIZED_VERT ||
            state.atoms[j] == ewmh._NET_WM_STATE_MAXIMIZED_HORZ)
            return true;
    return false;
}

} // namespace

std::string latin1ToUtf8(const char* bytes, size_t length) {
    std::string out;
    out.reserve(length);
    for (size_t i = 0; i < length; ++i) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

X11Windows::X11Windows(std::unique_ptr<XConnection> x, X11Screens& screens, DesktopEntries& entries,
                       Dispatch& dispatch, SystemLog& log, int32_t ownPid,
                       std::string ownIdentifier)
    : x_(std::move(x))
    , screens_(screens)
    , entries_(entries)
    , dispatch_(dispatch)
    , log_(log)
    , ownPid_(ownPid)
    , ownIdentifier_(std::move(ownIdentifier)) {}

void X11Windows::log(std::string line) {
    // The log is the main thread's, and this runs on any: the line is handed
    // over (the log, unlike this object, lives as long as the dispatch).
    dispatch_.main([&log = log_, line = std::move(line)] { log.line(line); });
}

void X11Windows::logQueuedErrors() {
    // Errors of requests nobody waits for (a message about a window that
    // has just gone) arrive as events; they are worth a line, not more.
    while (auto* e = xcb_poll_for_event(x_->get())) {
        if ((e->response_type & 0x7f) == 0)
            log("X error: " + describeError(reinterpret_cast<xcb_generic_error_t*>(e)));
        std::free(e);
    }
}

std::vector<WindowFacts> X11Windows::fetch(const std::vector<xcb_window_t>& ids) {
    auto* c = x_->get();
    auto& ewmh = x_->ewmh();
    const auto& atoms = x_->atoms();
    struct Cookies {
        xcb_get_property_cookie_t pid, wmClass, netName, wmName, type, state, transient, extents,
            gtkId, kdeFile;
        xcb_get_geometry_cookie_t geometry;
        xcb_translate_coordinates_cookie_t position;
    };
    std::vector<Cookies> cookies;
    cookies.reserve(ids.size());
    // Every request first, then every reply: one wait for the whole batch.
    for (auto id : ids) {
        Cookies k;
        k.pid = xcb_ewmh_get_wm_pid(&ewmh, id);
        k.wmClass = xcb_icccm_get_wm_class(c, id);
        k.netName = xcb_ewmh_get_wm_name(&ewmh, id);
        k.wmName = xcb_get_property(c, 0, id, XCB_ATOM_WM_NAME, XCB_ATOM_ANY, 0, 1024);
        k.type = xcb_ewmh_get_wm_window_type(&ewmh, id);
        k.state = xcb_ewmh_get_wm_state(&ewmh, id);
        k.transient = xcb_icccm_get_wm_transient_for(c, id);
        k.extents = xcb_ewmh_get_frame_extents(&ewmh, id);
        k.gtkId = xcb_get_property(c, 0, id, atoms.gtkApplicationId, XCB_ATOM_ANY, 0, 256);
        k.kdeFile = xcb_get_property(c, 0, id, atoms.kdeDesktopFile, XCB_ATOM_ANY, 0, 256);
        k.geometry = xcb_get_geometry(c, id);
        k.position = xcb_translate_coordinates(c, id, x_->root(), 0, 0);
        cookies.push_back(k);
    }
    xcb_flush(c);
    ++roundTrips_;

    std::vector<WindowFacts> out;
    out.reserve(ids.size());
    for (size_t i = 0; i < ids.size(); ++i) {
        const auto& k = cookies[i];
        WindowFacts f;
        f.id = ids[i];
        xcb_generic_error_t* err = nullptr;
        auto drop = [&err] {
            std::free(err);
            err = nullptr;
        };
        bool gone = false;

        uint32_t pid = 0;
        if (xcb_ewmh_get_wm_pid_reply(&ewmh, k.pid, &pid, &err)) f.pid = static_cast<int32_t>(pid);
        gone |= err != nullptr;
        drop();
        xcb_icccm_get_wm_class_reply_t cls;
        if (xcb_icccm_get_wm_class_reply(c, k.wmClass, &cls, &err)) {
            f.instance = latin1ToUtf8(cls.instance_name, std::strlen(cls.instance_name));
            f.wmClass = latin1ToUtf8(cls.class_name, std::strlen(cls.class_name));
            xcb_icccm_get_wm_class_reply_wipe(&cls);
        }
        drop();
        xcb_ewmh_get_utf8_strings_reply_t name;
        if (xcb_ewmh_get_wm_name_reply(&ewmh, k.netName, &name, &err)) {
            f.title.assign(name.strings, name.strings_len);
            xcb_ewmh_get_utf8_strings_reply_wipe(&name);
        }
        drop();
        Reply<xcb_get_property_reply_t> wmName(xcb_get_property_reply(c, k.wmName, &err));
        drop();
        if (f.title.empty() && wmName && wmName->format == 8) {
            const auto text = propertyString(wmName.get());
            // UTF8_STRING as it is; STRING (and the Latin-1 part of compound
            // text, all a title ever uses in practice) from Latin-1.
            f.title =
                wmName->type == atoms.utf8String ? text : latin1ToUtf8(text.data(), text.size());
        }
        xcb_ewmh_get_atoms_reply_t types;
        if (xcb_ewmh_get_wm_window_type_reply(&ewmh, k.type, &types, &err)) {
            if (types.atoms_len > 0) {
                const auto t = types.atoms[0];
                f.normalType = t == ewmh._NET_WM_WINDOW_TYPE_NORMAL;
                f.dialogType = t == ewmh._NET_WM_WINDOW_TYPE_DIALOG;
            }
            xcb_ewmh_get_atoms_reply_wipe(&types);
        }
        drop();
        xcb_ewmh_get_atoms_reply_t state;
        if (xcb_ewmh_get_wm_state_reply(&ewmh, k.state, &state, &err)) {
            for (uint32_t j = 0; j < state.atoms_len; ++j) {
                const auto a = state.atoms[j];
                f.hidden |= a == ewmh._NET_WM_STATE_HIDDEN;
                f.fullscreen |= a == ewmh._NET_WM_STATE_FULLSCREEN;
                f.skipTaskbar |= a == ewmh._NET_WM_STATE_SKIP_TASKBAR;
            }
            f.maximized = maximizedIn(ewmh, state);
            xcb_ewmh_get_atoms_reply_wipe(&state);
        }
        drop();
        xcb_window_t parent = XCB_NONE;
        if (xcb_icccm_get_wm_transient_for_reply(c, k.transient, &parent, &err))
            f.transient = parent != XCB_NONE;
        drop();
        xcb_ewmh_get_extents_reply_t extents;
        if (xcb_ewmh_get_frame_extents_reply(&ewmh, k.extents, &extents, &err)) {
            f.extents[0] = extents.left;
            f.extents[1] = extents.right;
            f.extents[2] = extents.top;
            f.extents[3] = extents.bottom;
        }
        drop();
        Reply<xcb_get_property_reply_t> gtkId(xcb_get_property_reply(c, k.gtkId, &err));
        drop();
        f.gtkApplicationId = propertyString(gtkId.get());
        Reply<xcb_get_property_reply_t> kdeFile(xcb_get_property_reply(c, k.kdeFile, &err));
        drop();
        f.kdeDesktopFile = propertyString(kdeFile.get());
        Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, k.geometry, &err));
        gone |= err != nullptr;
        drop();
        Reply<xcb_translate_coordinates_reply_t> position(
            xcb_translate_coordinates_reply(c, k.position, &err));
        gone |= err != nullptr;
        drop();
        // A window that went while we asked is left out of the listing.
        if (gone || !geometry || !position) continue;
        f.client = {static_cast<double>(position->dst_x), static_cast<double>(position->dst_y),
                    static_cast<double>(geometry->width), static_cast<double>(geometry->height)};
        f.frame = {f.client.x - f.extents[0], f.client.y - f.extents[2],
                   f.client.w + f.extents[0] + f.extents[1],
                   f.client.h + f.extents[2] + f.extents[3]};
        out.push_back(std::move(f));
    }
    logQueuedErrors();
    return out;
}

std::vector<AppRef> X11Windows::group(const std::vector<WindowFacts>& windows) {
    std::vector<AppRef> apps;
    std::map<int32_t, std::shared_ptr<RunningApp>> byPid;
    for (const auto& w : windows) {
        if (w.pid <= 0 || w.pid == ownPid_) continue;
        auto& app = byPid[w.pid];
        if (!app) {
            app = std::make_shared<RunningApp>();
            app->pid = w.pid;
            app->kind = AppKind::accessory;
            std::optional<DesktopEntry> entry;
            if (!w.gtkApplicationId.empty()) entry = entries_.byId(w.gtkApplicationId);
            if (!entry && !w.kdeDesktopFile.empty()) entry = entries_.byId(w.kdeDesktopFile);
            if (!entry && (!w.wmClass.empty() || !w.instance.empty()))
                entry = entries_.byWmClass(w.instance, w.wmClass);
            if (entry) {
                app->identifier = entry->id;
                app->name = entry->name;
                app->icon = entry->icon;
            } else if (!w.wmClass.empty()) {
                app->identifier = w.wmClass;
                app->name = w.wmClass;
            }
            apps.push_back(app);
        }
        // An application counts once it has a window a user would switch to.
        if (w.normalType && !w.transient && !w.skipTaskbar) app->kind = AppKind::regular;
    }
    return apps;
}

X11Windows::Snapshot X11Windows::takeSnapshot() {
    Snapshot s;
    if (x_->broken()) return s;
    auto cookie = xcb_ewmh_get_client_list(&x_->ewmh(), x_->screenNumber());
    xcb_ewmh_get_windows_reply_t list;
    ++roundTrips_;
    if (!xcb_ewmh_get_client_list_reply(&x_->ewmh(), cookie, &list, nullptr)) return s;
    std::vector<xcb_window_t> ids(list.windows, list.windows + list.windows_len);
    xcb_ewmh_get_windows_reply_wipe(&list);
    s.windows = fetch(ids);
    s.apps = group(s.windows);
    return s;
}

std::vector<AppWindow> X11Windows::list(const std::function<bool(const RunningApp&)>& wanted) {
    std::lock_guard lock(mutex_);
    auto s = takeSnapshot();
    facts_.clear();
    const Point o = screens_.origin();
    std::vector<AppWindow> out;
    for (const auto& app : s.apps) {
        if (!wanted(*app)) continue;
        for (const auto& f : s.windows) {
            if (f.pid != app->pid) continue;
            // What a user switches between: no dialog, panel or desktop, and not minimized.
            if (!f.normalType || f.transient || f.hidden) continue;
            out.push_back({app,
                           std::make_shared<Handle>(f.id),
                           {f.frame.x - o.x, f.frame.y - o.y, f.frame.w, f.frame.h},
                           f.title,
                           f.fullscreen,
                           f.maximized});
        }
    }
    for (auto& w : s.windows)
        facts_[w.id] = std::move(w);
    return out;
}

std::vector<AppRef> X11Windows::applications() {
    std::lock_guard lock(mutex_);
    return takeSnapshot().apps;
}

const WindowFacts* X11Windows::factsFor(xcb_window_t id, bool live) {
    auto it = facts_.find(id);
    if (it != facts_.end() && !live) return &it->second;
    auto fresh = fetch({id});
    if (fresh.empty()) {
        if (it != facts_.end()) facts_.erase(it);
        return nullptr;
    }
    auto& slot = facts_[id];
    slot = std::move(fresh.front());
    return &slot;
}

void X11Windows::restoredExtents(std::unique_lock<std::mutex>& lock, xcb_window_t id,
                                 uint32_t extents[4]) {
    auto& ewmh = x_->ewmh();
    using clock = std::chrono::steady_clock;
    const auto start = clock::now();
    const uint32_t before[4] = {extents[0], extents[1], extents[2], extents[3]};
    std::optional<clock::time_point> leftAt;
    // The state flips first and the decoration follows: after the flip, wait
    // a little longer for the extents to change, since a window manager
    // that draws maximized windows like others never changes them.
    while (clock::now() - start < std::chrono::milliseconds(300)) {
        auto stateCookie = xcb_ewmh_get_wm_state(&ewmh, id);
        auto extentsCookie = xcb_ewmh_get_frame_extents(&ewmh, id);
        ++roundTrips_;
        bool maximized = false, readable = false;
        xcb_ewmh_get_atoms_reply_t state;
        if (xcb_ewmh_get_wm_state_reply(&ewmh, stateCookie, &state, nullptr)) {
            readable = true;
            maximized = maximizedIn(ewmh, state);
            xcb_ewmh_get_atoms_reply_wipe(&state);
        }
        xcb_ewmh_get_extents_reply_t e;
        const bool haveExtents =
            xcb_ewmh_get_frame_extents_reply(&ewmh, extentsCookie, &e, nullptr) != 0;
        if (!readable) return; // gone, or it never had a state: nothing to wait for
        if (!maximized) {
            if (haveExtents) {
                extents[0] = e.left;
                extents[1] = e.right;
                extents[2] = e.top;
                extents[3] = e.bottom;
            }
            const bool changed = extents[0] != before[0] || extents[1] != before[1] ||
                                 extents[2] != before[2] || extents[3] != before[3];
            if (!leftAt) leftAt = clock::now();
            if (changed || clock::now() - *leftAt > std::chrono::milliseconds(60)) return;
        }
        // A window manager takes a few milliseconds; other windows' reads
        // and moves need not wait for it.
        lock.unlock();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        lock.lock();
    }
}

namespace {

// The X server keeps positions and sizes in 16 bits; a value beyond them (or
// not a number at all) would be undefined to convert, so it is pinned to the
// nearest the server can hold.
int32_t coordinate(double v) {
    if (std::isnan(v)) return 0;
    return static_cast<int32_t>(std::clamp(v, -32768.0, 32767.0));
}

} // namespace

void X11Windows::changeState(xcb_window_t id, bool add, xcb_atom_t first, xcb_atom_t second) {
    xcb_ewmh_request_change_wm_state(&x_->ewmh(), x_->screenNumber(), id,
                                     add ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE, first,
                                     second, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    xcb_flush(x_->get());
}

void X11Windows::sendFrame(std::unique_lock<std::mutex>& lock, xcb_window_t id, const Rect& frame) {
    const auto* f = factsFor(id, false);
    if (!f) return;
    auto& ewmh = x_->ewmh();
    // `f` lies in the cache, which another thread may change while we wait.
    uint32_t extents[4] = {f->extents[0], f->extents[1], f->extents[2], f->extents[3]};
    // A maximized window would keep its size and ignore ours. Its decoration
    // changes as it leaves the state (borders come back), and the size we
    // ask is the client's: wait for the window manager, then measure again.
    if (f->maximized) {
        changeState(id, false, ewmh._NET_WM_STATE_MAXIMIZED_VERT,
                    ewmh._NET_WM_STATE_MAXIMIZED_HORZ);
        restoredExtents(lock, id, extents);
        forgetMaximized(id, extents);
    }
    const Point o = screens_.origin();
    // The core speaks of the frame; the window manager sizes the client.
    const double cw = frame.w - extents[0] - extents[1];
    const double ch = frame.h - extents[2] - extents[3];
    xcb_ewmh_request_moveresize_window(
        &ewmh, x_->screenNumber(), id, XCB_GRAVITY_NORTH_WEST, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
        static_cast<xcb_ewmh_moveresize_window_opt_flags_t>(
            XCB_EWMH_MOVERESIZE_WINDOW_X | XCB_EWMH_MOVERESIZE_WINDOW_Y |
            XCB_EWMH_MOVERESIZE_WINDOW_WIDTH | XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT),
        static_cast<uint32_t>(coordinate(frame.x + o.x)),
        static_cast<uint32_t>(coordinate(frame.y + o.y)),
        static_cast<uint32_t>(coordinate(std::max(1.0, cw))),
        static_cast<uint32_t>(coordinate(std::max(1.0, ch))));
}

void X11Windows::place(const WindowRef& window, const Rect& frame) {
    placeAll({{window, frame}});
}

void X11Windows::placeAll(const std::vector<Placing>& batch) {
    std::unique_lock lock(mutex_);
    if (x_->broken()) return;
    for (const auto& p : batch)
        if (const auto id = idOf(p.window)) sendFrame(lock, id, p.frame);
    // One flush for the batch: the requests need no answer.
    xcb_flush(x_->get());
}

bool X11Windows::setFullscreen(const WindowRef& window, bool on) {
    const auto id = idOf(window);
    if (!id) return false;
    {
        std::lock_guard lock(mutex_);
        if (x_->broken()) return false;
        auto& ewmh = x_->ewmh();
        changeState(id, on, ewmh._NET_WM_STATE_FULLSCREEN, XCB_NONE);
    }
    for (int poll = 0; poll < 50; ++poll) {
        dispatch_.sleep(0.1);
        bool reached = false;
        {
            std::lock_guard lock(mutex_);
            const auto* f = x_->broken() ? nullptr : factsFor(id, true);
            if (!f) return false; // gone: it will report nothing
            bool state = f->fullscreen;
            if (state) {
                // The property flips before the window manager has resized
                // the window: full screen only once it covers a whole monitor.
                const auto monitors = screens_.monitors();
                state = std::any_of(monitors.begin(), monitors.end(),
                                    [&](const Monitor& m) { return m.frame == f->client; });
            }
            reached = state == on;
        }
        if (reached) {
            // Applications redraw for a while after the change; let them
            // before the window is touched again.
            dispatch_.sleep(0.9);
            return true;
        }
    }
    return false;
}

void X11Windows::setMaximized(const WindowRef& window, bool on) {
    const auto id = idOf(window);
    if (!id) return;
    std::unique_lock lock(mutex_);
    if (x_->broken()) return;
    const auto* f = factsFor(id, false);
    if (!f) return;
    auto& ewmh = x_->ewmh();
    const bool wasMaximized = f->maximized;
    uint32_t extents[4] = {f->extents[0], f->extents[1], f->extents[2], f->extents[3]};
    changeState(id, on, ewmh._NET_WM_STATE_MAXIMIZED_VERT, ewmh._NET_WM_STATE_MAXIMIZED_HORZ);
    if (on || !wasMaximized) return;
    // A frame is read or written next, so the restored one must be there.
    restoredExtents(lock, id, extents);
    forgetMaximized(id, extents);
}

void X11Windows::forgetMaximized(xcb_window_t id, const uint32_t extents[4]) {
    // The cache may have been replaced while the window was waited for.
    auto it = facts_.find(id);
    if (it == facts_.end()) return;
    it->second.maximized = false;
    std::copy(extents, extents + 4, it->second.extents);
}

std::optional<Rect> X11Windows::frame(const WindowRef& window) {
    const auto id = idOf(window);
    if (!id) return std::nullopt;
    std::lock_guard lock(mutex_);
    if (x_->broken()) return std::nullopt;
    const auto* f = factsFor(id, true);
    if (!f) return std::nullopt;
    const Point o = screens_.origin();
    return Rect{f->frame.x - o.x, f->frame.y - o.y, f->frame.w, f->frame.h};
}

} // namespace tarnwick::x11
