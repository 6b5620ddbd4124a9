#include "platform/x11/X11WindowAccess.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>
#include <unordered_set>

namespace tarnwick::x11 {

namespace {

struct AppElement : AXElementObject {
    explicit AppElement(int32_t p)
        : pid(p) {}
    int32_t pid;
};

struct WindowElement : AXElementObject {
    explicit WindowElement(xcb_window_t w)
        : window(w) {}
    xcb_window_t window;
    // Set by the first write: from then on its reads go to the server.
    bool live = false;
    // The core writes a frame as size, position, size; the first size waits
    // for the position so that both go out as one request, and the second
    // is dropped when it repeats what was sent.
    std::optional<Size> pendingSize;
    std::optional<Size> sentSize;
};

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

X11WindowAccess::X11WindowAccess(std::unique_ptr<XConnection> x, X11Screens& screens,
                                 DesktopEntries& entries, Dispatch& dispatch, SystemLog& log,
                                 int32_t ownPid, std::string ownIdentifier)
    : x_(std::move(x))
    , screens_(screens)
    , entries_(entries)
    , dispatch_(dispatch)
    , log_(log)
    , ownPid_(ownPid)
    , ownIdentifier_(std::move(ownIdentifier)) {}

void X11WindowAccess::log(std::string line) {
    // The log is the main thread's, and this runs on any: the line is handed
    // over (the log, unlike this object, lives as long as the dispatch).
    dispatch_.main([&log = log_, line = std::move(line)] { log.line(line); });
}

void X11WindowAccess::logQueuedErrors() {
    // Errors of requests nobody waits for (a message about a window that
    // has just gone) arrive as events; they are worth a line, not more.
    while (auto* e = xcb_poll_for_event(x_->get())) {
        if ((e->response_type & 0x7f) == 0)
            log("X error: " + describeError(reinterpret_cast<xcb_generic_error_t*>(e)));
        std::free(e);
    }
}

std::vector<WindowFacts> X11WindowAccess::fetch(const std::vector<xcb_window_t>& ids) {
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

std::vector<AppRef> X11WindowAccess::group(const std::vector<WindowFacts>& windows) {
    std::vector<AppRef> apps;
    std::map<int32_t, std::shared_ptr<RunningApp>> byPid;
    for (const auto& w : windows) {
        if (w.pid <= 0 || w.pid == ownPid_) continue;
        auto& app = byPid[w.pid];
        if (!app) {
            app = std::make_shared<RunningApp>();
            app->pid = w.pid;
            app->policy = ActivationPolicy::accessory;
            std::optional<DesktopEntry> entry;
            if (!w.gtkApplicationId.empty()) entry = entries_.byId(w.gtkApplicationId);
            if (!entry && !w.kdeDesktopFile.empty()) entry = entries_.byId(w.kdeDesktopFile);
            if (!entry && (!w.wmClass.empty() || !w.instance.empty()))
                entry = entries_.byWmClass(w.instance, w.wmClass);
            if (entry) {
                app->bundleIdentifier = entry->id;
                app->localizedName = entry->name;
                app->icon = entry->icon;
            } else if (!w.wmClass.empty()) {
                app->bundleIdentifier = w.wmClass;
                app->localizedName = w.wmClass;
            }
            apps.push_back(app);
        }
        // An application counts once it has a window a user would switch to.
        if (w.normalType && !w.transient && !w.skipTaskbar) app->policy = ActivationPolicy::regular;
    }
    return apps;
}

X11WindowAccess::Snapshot X11WindowAccess::takeSnapshot() {
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

std::vector<AppRef> X11WindowAccess::runningApplications() {
    std::lock_guard lock(mutex_);
    auto s = takeSnapshot();
    facts_.clear();
    order_.clear();
    for (auto& w : s.windows) {
        order_.push_back(w.id);
        facts_[w.id] = std::move(w);
    }
    return s.apps;
}

std::vector<AppRef> X11WindowAccess::applications() {
    std::lock_guard lock(mutex_);
    return takeSnapshot().apps;
}

std::optional<std::vector<WindowListEntry>> X11WindowAccess::windowList() {
    std::lock_guard lock(mutex_);
    std::vector<WindowListEntry> out;
    for (auto id : order_) {
        const auto& f = facts_[id];
        out.push_back({.ownerPid = f.pid, .layer = 0, .bounds = f.frame.size(), .number = id});
    }
    return out;
}

AXElement X11WindowAccess::createApplication(int32_t pid) {
    return std::make_shared<AppElement>(pid);
}

const WindowFacts* X11WindowAccess::factsFor(xcb_window_t id, bool live) {
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

AXError X11WindowAccess::copyAttribute(const AXElement& element, const std::string& name,
                                       AXAttribute& value) {
    std::unique_lock lock(mutex_);
    if (x_->broken()) return axCannotComplete;
    if (auto* app = dynamic_cast<AppElement*>(element.get())) {
        if (name != "AXWindows") return axAttributeUnsupported;
        std::vector<AXElement> windows;
        for (auto id : order_)
            if (facts_[id].pid == app->pid) windows.push_back(std::make_shared<WindowElement>(id));
        value = std::move(windows);
        return axSuccess;
    }
    auto* w = dynamic_cast<WindowElement*>(element.get());
    if (!w) return axIllegalArgument;
    if (w->pendingSize) {
        // A size that no position followed goes out on its own.
        if (const auto* f = factsFor(w->window, false))
            sendFrame(lock, w->window, *f, std::nullopt, w->pendingSize);
        w->pendingSize.reset();
    }
    const auto* f = factsFor(w->window, w->live);
    if (!f) return axInvalidUIElement;
    const Point o = screens_.origin();
    if (name == "AXSubrole") {
        value = std::string(f->normalType && !f->transient  ? "AXStandardWindow"
                            : f->dialogType || f->transient ? "AXDialog"
                                                            : "AXFloatingWindow");
    } else if (name == "AXMinimized") {
        value = f->hidden;
    } else if (name == "AXPosition") {
        value = AXValue{AXValueType::point, f->frame.x - o.x, f->frame.y - o.y};
    } else if (name == "AXSize") {
        value = AXValue{AXValueType::size, f->frame.w, f->frame.h};
    } else if (name == "AXTitle") {
        value = f->title;
    } else if (name == "AXFullScreen") {
        bool on = f->fullscreen;
        if (on && w->live) {
            // The property flips before the window manager has resized the
            // window: full screen only once it covers a whole monitor.
            const auto monitors = screens_.monitors();
            on = std::any_of(monitors.begin(), monitors.end(),
                             [&](const Monitor& m) { return m.frame == f->client; });
        }
        value = on;
    } else if (name == "AXMaximized") {
        value = f->maximized;
    } else {
        return axAttributeUnsupported;
    }
    return axSuccess;
}

void X11WindowAccess::restoredExtents(std::unique_lock<std::mutex>& lock, xcb_window_t id,
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

void X11WindowAccess::sendFrame(std::unique_lock<std::mutex>& lock, xcb_window_t id,
                                const WindowFacts& f, std::optional<Point> position,
                                std::optional<Size> size) {
    auto& ewmh = x_->ewmh();
    // `f` lies in the cache, which another thread may change while we wait.
    uint32_t extents[4] = {f.extents[0], f.extents[1], f.extents[2], f.extents[3]};
    // A maximized window would keep its size and ignore ours. Its decoration
    // changes as it leaves the state (borders come back), and the size we
    // ask is the client's: wait for the window manager, then measure again.
    if (f.maximized) {
        xcb_ewmh_request_change_wm_state(&ewmh, x_->screenNumber(), id, XCB_EWMH_WM_STATE_REMOVE,
                                         ewmh._NET_WM_STATE_MAXIMIZED_VERT,
                                         ewmh._NET_WM_STATE_MAXIMIZED_HORZ,
                                         XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
        xcb_flush(x_->get());
        restoredExtents(lock, id, extents);
    }
    int flags = 0;
    uint32_t x = 0, y = 0, w = 0, h = 0;
    if (position) {
        const Point o = screens_.origin();
        flags |= XCB_EWMH_MOVERESIZE_WINDOW_X | XCB_EWMH_MOVERESIZE_WINDOW_Y;
        x = static_cast<uint32_t>(coordinate(position->x + o.x));
        y = static_cast<uint32_t>(coordinate(position->y + o.y));
    }
    if (size) {
        // The core speaks of the frame; the window manager sizes the client.
        const double cw = size->w - extents[0] - extents[1];
        const double ch = size->h - extents[2] - extents[3];
        flags |= XCB_EWMH_MOVERESIZE_WINDOW_WIDTH | XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT;
        w = static_cast<uint32_t>(coordinate(std::max(1.0, cw)));
        h = static_cast<uint32_t>(coordinate(std::max(1.0, ch)));
    }
    if (flags)
        xcb_ewmh_request_moveresize_window(
            &ewmh, x_->screenNumber(), id, XCB_GRAVITY_NORTH_WEST,
            XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
            static_cast<xcb_ewmh_moveresize_window_opt_flags_t>(flags), x, y, w, h);
    xcb_flush(x_->get());
}

AXError X11WindowAccess::setAttribute(const AXElement& element, const std::string& name,
                                      const AXAttribute& value) {
    std::unique_lock lock(mutex_);
    if (x_->broken()) return axCannotComplete;
    auto* w = dynamic_cast<WindowElement*>(element.get());
    if (!w) return axAttributeUnsupported;
    const auto* f = factsFor(w->window, false);
    if (!f) return axInvalidUIElement;
    const auto* v = std::get_if<AXValue>(&value);
    const auto* b = std::get_if<bool>(&value);
    if (name == "AXSize" && v && v->type == AXValueType::size) {
        const Size size{v->a, v->b};
        if (!w->pendingSize && w->sentSize == size) {
            w->sentSize.reset();
            return axSuccess;
        }
        if (w->pendingSize) sendFrame(lock, w->window, *f, std::nullopt, w->pendingSize);
        w->pendingSize = size;
        w->sentSize.reset();
        return axSuccess;
    }
    if (name == "AXPosition" && v && v->type == AXValueType::point) {
        sendFrame(lock, w->window, *f, Point{v->a, v->b}, w->pendingSize);
        w->sentSize = w->pendingSize;
        w->pendingSize.reset();
        w->live = true;
        return axSuccess;
    }
    if (name == "AXFullScreen" && b) {
        auto& ewmh = x_->ewmh();
        xcb_ewmh_request_change_wm_state(&ewmh, x_->screenNumber(), w->window,
                                         *b ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE,
                                         ewmh._NET_WM_STATE_FULLSCREEN, XCB_NONE,
                                         XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
        xcb_flush(x_->get());
        w->live = true;
        return axSuccess;
    }
    if (name == "AXMaximized" && b) {
        auto& ewmh = x_->ewmh();
        const bool wasMaximized = f->maximized;
        uint32_t extents[4] = {f->extents[0], f->extents[1], f->extents[2], f->extents[3]};
        xcb_ewmh_request_change_wm_state(&ewmh, x_->screenNumber(), w->window,
                                         *b ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE,
                                         ewmh._NET_WM_STATE_MAXIMIZED_VERT,
                                         ewmh._NET_WM_STATE_MAXIMIZED_HORZ,
                                         XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
        xcb_flush(x_->get());
        // The core reads the restored frame next, so it must be there.
        if (!*b && wasMaximized) restoredExtents(lock, w->window, extents);
        w->live = true;
        return axSuccess;
    }
    if (name == "AXMinimized" && b && !*b) {
        // Mapping restores a minimized window reliably; asking the window
        // manager to activate it does not.
        xcb_map_window(x_->get(), w->window);
        xcb_flush(x_->get());
        w->live = true;
        return axSuccess;
    }
    return axIllegalArgument;
}

} // namespace tarnwick::x11
