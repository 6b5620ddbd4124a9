#include "platform/x11/X11Screens.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tarnwick::x11 {

uint32_t DisplayNumbers::number(const std::string& name, uint32_t suggested) {
    if (auto it = byName_.find(name); it != byName_.end()) return it->second;
    uint32_t n = suggested;
    if (given_.count(n)) do
            n = next_++;
        while (given_.count(n));
    byName_.emplace(name, n);
    given_.insert(n);
    return n;
}

bool isPanelConnector(const std::string& outputName, const std::string& connectorType) {
    for (const char* prefix : {"eDP", "LVDS", "DSI"})
        if (outputName.rfind(prefix, 0) == 0) return true;
    return connectorType == "Panel";
}

std::string edidMonitorName(const uint8_t* edid, size_t length) {
    if (length < 128) return "";
    for (size_t at = 54; at + 18 <= 126; at += 18) {
        const uint8_t* d = edid + at;
        if (d[0] != 0 || d[1] != 0 || d[3] != 0xFC) continue;
        std::string name;
        for (size_t i = 5; i < 18 && d[i] != 0x0A && d[i] != 0; ++i)
            name += static_cast<char>(d[i] < 0x80 ? d[i] : '?');
        while (!name.empty() && name.back() == ' ')
            name.pop_back();
        return name;
    }
    return "";
}

void applyStruts(std::vector<Monitor>& monitors,
                 const std::vector<std::array<uint32_t, 12>>& struts, Size root) {
    for (auto& m : monitors) {
        m.usable = m.frame;
        for (const auto& s : struts) {
            // left, right, top, bottom, then start/end pairs for each edge.
            const double left = s[0], right = s[1], top = s[2], bottom = s[3];
            auto overlaps = [](double a0, double a1, double b0, double b1) {
                return a0 <= b1 && b0 <= a1;
            };
            Rect& u = m.usable;
            if (left > m.frame.x && overlaps(s[4], s[5], m.frame.y, m.frame.maxY() - 1)) {
                const double cut = std::min(left, m.frame.maxX()) - u.x;
                if (cut > 0) u = {u.x + cut, u.y, u.w - cut, u.h};
            }
            if (right > 0 && root.w - right < m.frame.maxX() &&
                overlaps(s[6], s[7], m.frame.y, m.frame.maxY() - 1)) {
                const double cut = u.maxX() - std::max(root.w - right, m.frame.x);
                if (cut > 0) u.w -= cut;
            }
            if (top > m.frame.y && overlaps(s[8], s[9], m.frame.x, m.frame.maxX() - 1)) {
                const double cut = std::min(top, m.frame.maxY()) - u.y;
                if (cut > 0) u = {u.x, u.y + cut, u.w, u.h - cut};
            }
            if (bottom > 0 && root.h - bottom < m.frame.maxY() &&
                overlaps(s[10], s[11], m.frame.x, m.frame.maxX() - 1)) {
                const double cut = u.maxY() - std::max(root.h - bottom, m.frame.y);
                if (cut > 0) u.h -= cut;
            }
            if (u.w < 0) u.w = 0;
            if (u.h < 0) u.h = 0;
        }
        // Docks that claim the whole monitor leave nothing to place windows
        // in; such a claim is ignored rather than the monitor.
        if (m.usable.w <= 0 || m.usable.h <= 0) m.usable = m.frame;
    }
}

std::vector<ScreenInfo> toScreenInfo(const std::vector<Monitor>& monitors) {
    std::vector<ScreenInfo> out;
    if (monitors.empty()) return out;
    const Rect& p = monitors.front().frame;
    const double bottom = p.maxY();
    auto flip = [&](const Rect& r) { return Rect{r.x - p.x, bottom - r.maxY(), r.w, r.h}; };
    for (const auto& m : monitors)
        out.push_back({.number = m.id,
                       .name = m.name,
                       .frame = flip(m.frame),
                       .visibleFrame = flip(m.usable)});
    return out;
}

X11Screens::X11Screens(XConnection& x, SystemLog& log)
    : x_(x)
    , log_(log) {
    refresh();
}

std::vector<Monitor> X11Screens::read() {
    auto* c = x_.get();
    std::vector<Monitor> out;
    if (!x_.randr15()) return out;

    // First batch: the monitors, the root's size and the clients (for struts).
    auto monitorsCookie = xcb_randr_get_monitors(c, x_.root(), 1);
    auto rootCookie = xcb_get_geometry(c, x_.root());
    auto clientsCookie = xcb_ewmh_get_client_list(&x_.ewmh(), x_.screenNumber());
    xcb_generic_error_t* err = nullptr;
    Reply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(c, monitorsCookie, &err));
    std::free(err);
    Reply<xcb_get_geometry_reply_t> root(xcb_get_geometry_reply(c, rootCookie, nullptr));
    xcb_ewmh_get_windows_reply_t clients{};
    const bool haveClients =
        xcb_ewmh_get_client_list_reply(&x_.ewmh(), clientsCookie, &clients, nullptr) != 0;
    if (!monitors) {
        if (haveClients) xcb_ewmh_get_windows_reply_wipe(&clients);
        return out;
    }

    // Second batch: each monitor's name and first output, each client's struts.
    struct Pending {
        Monitor m;
        xcb_get_atom_name_cookie_t name;
        bool hasOutput = false;
        xcb_randr_get_output_info_cookie_t info;
        xcb_randr_get_output_property_cookie_t edid, connector;
    };
    std::vector<Pending> pending;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem;
         xcb_randr_monitor_info_next(&it)) {
        const auto* mi = it.data;
        // A CRTC being switched shows as a monitor without area for a moment.
        if (mi->width == 0 || mi->height == 0) continue;
        Pending p;
        p.m.frame = {static_cast<double>(mi->x), static_cast<double>(mi->y),
                     static_cast<double>(mi->width), static_cast<double>(mi->height)};
        p.m.primary = mi->primary != 0;
        p.m.id = mi->name; // replaced by the output's XID below when there is one
        p.name = xcb_get_atom_name(c, mi->name);
        if (xcb_randr_monitor_info_outputs_length(mi) > 0) {
            const auto output = xcb_randr_monitor_info_outputs(mi)[0];
            p.m.id = output;
            p.hasOutput = true;
            p.info = xcb_randr_get_output_info(c, output, XCB_CURRENT_TIME);
            p.edid = xcb_randr_get_output_property(c, output, x_.atoms().edid, XCB_ATOM_ANY, 0, 256,
                                                   0, 0);
            p.connector = xcb_randr_get_output_property(c, output, x_.atoms().connectorType,
                                                        XCB_ATOM_ANY, 0, 1, 0, 0);
        }
        pending.push_back(p);
    }
    std::vector<xcb_get_property_cookie_t> strutCookies;
    if (haveClients)
        for (uint32_t i = 0; i < clients.windows_len; ++i)
            strutCookies.push_back(xcb_ewmh_get_wm_strut_partial(&x_.ewmh(), clients.windows[i]));

    for (auto& p : pending) {
        Reply<xcb_get_atom_name_reply_t> name(xcb_get_atom_name_reply(c, p.name, nullptr));
        const std::string monitorName =
            name ? std::string(xcb_get_atom_name_name(name.get()),
                               static_cast<size_t>(xcb_get_atom_name_name_length(name.get())))
                 : "";
        std::string outputName, connectorType, edidName;
        if (p.hasOutput) {
            Reply<xcb_randr_get_output_info_reply_t> info(
                xcb_randr_get_output_info_reply(c, p.info, &err));
            std::free(err);
            if (info)
                outputName = std::string(
                    reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
                    static_cast<size_t>(xcb_randr_get_output_info_name_length(info.get())));
            Reply<xcb_randr_get_output_property_reply_t> edid(
                xcb_randr_get_output_property_reply(c, p.edid, &err));
            std::free(err);
            if (edid && edid->format == 8)
                edidName = edidMonitorName(xcb_randr_get_output_property_data(edid.get()),
                                           static_cast<size_t>(edid->num_items));
            Reply<xcb_randr_get_output_property_reply_t> connector(
                xcb_randr_get_output_property_reply(c, p.connector, &err));
            std::free(err);
            if (connector && connector->format == 32 && connector->num_items == 1) {
                xcb_atom_t atom;
                std::memcpy(&atom, xcb_randr_get_output_property_data(connector.get()),
                            sizeof atom);
                connectorType = atom == x_.atoms().panel ? "Panel" : "";
            }
        }
        p.m.id = p.hasOutput && !outputName.empty()
                     ? numbers_.number("output " + outputName, p.m.id)
                     : numbers_.number("monitor " + monitorName, p.m.id);
        p.m.name = !edidName.empty() ? edidName : monitorName;
        p.m.builtin = isPanelConnector(monitorName, connectorType) ||
                      isPanelConnector(outputName, connectorType);
        out.push_back(p.m);
    }

    std::vector<std::array<uint32_t, 12>> struts;
    for (auto cookie : strutCookies) {
        xcb_ewmh_wm_strut_partial_t s{};
        if (xcb_ewmh_get_wm_strut_partial_reply(&x_.ewmh(), cookie, &s, nullptr))
            struts.push_back({s.left, s.right, s.top, s.bottom, s.left_start_y, s.left_end_y,
                              s.right_start_y, s.right_end_y, s.top_start_x, s.top_end_x,
                              s.bottom_start_x, s.bottom_end_x});
    }
    if (haveClients) xcb_ewmh_get_windows_reply_wipe(&clients);
    const Size rootSize =
        root ? Size{static_cast<double>(root->width), static_cast<double>(root->height)}
             : Size{static_cast<double>(x_.screen()->width_in_pixels),
                    static_cast<double>(x_.screen()->height_in_pixels)};
    applyStruts(out, struts, rootSize);
    // Primary first; without a primary, RandR's order with the first leading.
    std::stable_partition(out.begin(), out.end(), [](const Monitor& m) { return m.primary; });
    return out;
}

bool X11Screens::refresh() {
    auto fresh = read();
    std::lock_guard lock(mutex_);
    auto same = [](const Monitor& a, const Monitor& b) {
        return a.id == b.id && a.name == b.name && a.frame == b.frame && a.usable == b.usable &&
               a.builtin == b.builtin && a.primary == b.primary;
    };
    const bool changed = !readOnce_ || fresh.size() != monitors_.size() ||
                         !std::equal(fresh.begin(), fresh.end(), monitors_.begin(), same);
    if (!readOnce_ && !x_.randr15()) log_.line("The X server has no RandR 1.5: no screens");
    readOnce_ = true;
    monitors_ = std::move(fresh);
    return changed;
}

std::vector<Monitor> X11Screens::monitors() {
    std::lock_guard lock(mutex_);
    return monitors_;
}

Point X11Screens::origin() {
    std::lock_guard lock(mutex_);
    if (monitors_.empty()) return {0, 0};
    return {monitors_.front().frame.x, monitors_.front().frame.y};
}

std::vector<ScreenInfo> X11Screens::screens() {
    return toScreenInfo(monitors());
}

bool X11Screens::isBuiltin(uint32_t displayId) {
    std::lock_guard lock(mutex_);
    return std::any_of(monitors_.begin(), monitors_.end(),
                       [&](const Monitor& m) { return m.id == displayId && m.builtin; });
}

std::optional<std::vector<uint32_t>> X11Screens::activeDisplayList() {
    std::lock_guard lock(mutex_);
    std::vector<uint32_t> ids;
    for (const auto& m : monitors_)
        ids.push_back(m.id);
    return ids;
}

Point X11Screens::mouseLocation() {
    Reply<xcb_query_pointer_reply_t> r(
        xcb_query_pointer_reply(x_.get(), xcb_query_pointer(x_.get(), x_.root()), nullptr));
    std::lock_guard lock(mutex_);
    if (!r || monitors_.empty()) return {0, 0};
    const Rect& p = monitors_.front().frame;
    return {r->root_x - p.x, p.maxY() - r->root_y};
}

std::optional<size_t> X11Screens::mainScreen() {
    // The screen under the pointer stands for the one the user works on.
    Reply<xcb_query_pointer_reply_t> r(
        xcb_query_pointer_reply(x_.get(), xcb_query_pointer(x_.get(), x_.root()), nullptr));
    std::lock_guard lock(mutex_);
    if (monitors_.empty()) return std::nullopt;
    if (r)
        for (size_t i = 0; i < monitors_.size(); ++i) {
            const Rect& f = monitors_[i].frame;
            if (r->root_x >= f.x && r->root_x < f.maxX() && r->root_y >= f.y &&
                r->root_y < f.maxY())
                return i;
        }
    return 0;
}

BuiltinWords X11Screens::builtinWords() {
    return {.screen = "Laptop screen", .computer = "Laptop", .yours = "your laptop"};
}

} // namespace tarnwick::x11
