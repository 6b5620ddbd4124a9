// tarnwick-bench-x11: lists and moves every client window of the test
// desktop to the monitor right of the laptop panel, and says where the time
// went. `ours` goes through the core's mover on the x11 platform; `raw` sends
// one pipelined _NET_MOVERESIZE_WINDOW per window and reads nothing, which
// is what the window manager needs at the least (its own apply time).
// Run by bench/x11/run on the test desktop; prints one line of figures.
#include "displays/Displays.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/QtDispatch.h"
#include "platform/linux/XdgDefaults.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/X11Windows.h"
#include "platform/x11/XConnection.h"
#include "prefs/Prefs.h"
#include "windows/WindowMover.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <thread>
#include <unistd.h>

using namespace tarnwick;
using namespace tarnwick::x11;
using Clock = std::chrono::steady_clock;

namespace {

double ms(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double, std::milli>(b - a).count();
}

struct QuietLog : SystemLog {
    void status(const std::string&) override {}
    void line(const std::string&) override {}
};

struct NoLogin : LoginItems {
    bool enabled() override { return false; }
    std::optional<std::string> registerApp() override { return std::nullopt; }
    std::optional<std::string> unregisterApp() override { return std::nullopt; }
};

std::vector<xcb_window_t> clients(XConnection& x) {
    xcb_ewmh_get_windows_reply_t list;
    std::vector<xcb_window_t> out;
    if (xcb_ewmh_get_client_list_reply(
            &x.ewmh(), xcb_ewmh_get_client_list(&x.ewmh(), x.screenNumber()), &list, nullptr)) {
        out.assign(list.windows, list.windows + list.windows_len);
        xcb_ewmh_get_windows_reply_wipe(&list);
    }
    return out;
}

// Polls (from a connection of its own) until every window's client area
// starts at or right of `edge` (or left of it, going `home`); the time it
// took, or -1 after 10 s.
double settle(XConnection& x, const std::vector<xcb_window_t>& ids, int edge,
              Clock::time_point since, bool home = false) {
    const auto deadline = since + std::chrono::seconds(10);
    while (Clock::now() < deadline) {
        std::vector<xcb_translate_coordinates_cookie_t> cookies;
        for (auto id : ids)
            cookies.push_back(xcb_translate_coordinates(x.get(), id, x.root(), 0, 0));
        bool all = true;
        for (auto c : cookies) {
            Reply<xcb_translate_coordinates_reply_t> r(
                xcb_translate_coordinates_reply(x.get(), c, nullptr));
            if (r && (home ? r->dst_x >= edge : r->dst_x < edge)) all = false;
        }
        if (all) return ms(since, Clock::now());
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    return -1;
}

} // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode != "ours" && mode != "raw" && mode != "home") {
        std::cerr << "usage: tarnwick-bench-x11 ours|raw|home\n";
        return 2;
    }
    std::string error;
    auto main = XConnection::open(nullptr, error);
    auto watch = main ? XConnection::open(nullptr, error) : nullptr;
    auto background = watch ? XConnection::open(nullptr, error) : nullptr;
    if (!background) {
        std::cerr << error << "\n";
        return 1;
    }
    QuietLog log;
    X11Screens screens(*main, log);
    const auto monitors = screens.monitors();
    if (monitors.size() < 2) {
        std::cerr << "plug a second monitor first\n";
        return 1;
    }
    const int edge = static_cast<int>(monitors[1].frame.x);
    const auto ids = clients(*watch);

    if (mode == "raw" || mode == "home") {
        const bool home = mode == "home";
        // The most a move of ours asks of the window manager: a move and a
        // resize by a pixel per window (ours writes the size with the
        // position, and under scale and fill changes it; a real resize makes
        // the window manager and the client redraw). Sizes are read first.
        std::vector<xcb_get_geometry_cookie_t> geometry;
        for (auto id : ids)
            geometry.push_back(xcb_get_geometry(main->get(), id));
        std::vector<std::pair<uint32_t, uint32_t>> sizes;
        for (auto c : geometry) {
            Reply<xcb_get_geometry_reply_t> g(xcb_get_geometry_reply(main->get(), c, nullptr));
            sizes.emplace_back(g ? g->width : 100u, g ? g->height : 100u);
            if (home) sizes.back() = {400, 300};
        }
        const auto start = Clock::now();
        for (size_t i = 0; i < ids.size(); ++i)
            xcb_ewmh_request_moveresize_window(
                &main->ewmh(), main->screenNumber(), ids[i], XCB_GRAVITY_NORTH_WEST,
                XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                static_cast<xcb_ewmh_moveresize_window_opt_flags_t>(
                    XCB_EWMH_MOVERESIZE_WINDOW_X | XCB_EWMH_MOVERESIZE_WINDOW_Y |
                    XCB_EWMH_MOVERESIZE_WINDOW_WIDTH | XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT),
                static_cast<uint32_t>(home ? 10 : edge + 10), 10, sizes[i].first + (home ? 0 : 1),
                sizes[i].second + (home ? 0 : 1));
        xcb_flush(main->get());
        const auto sent = Clock::now();
        const double applied = settle(*watch, ids, edge, start, home);
        if (home) return applied < 0 ? 1 : 0;
        std::printf("raw windows=%zu client_ms=%.2f end_to_end_ms=%.1f\n", ids.size(),
                    ms(start, sent), applied);
        return applied < 0 ? 1 : 0;
    }

    QCoreApplication qt(argc, argv); // the dispatch's wake-up needs an event loop's thread
    const auto dir =
        std::filesystem::temp_directory_path() / ("tarnwick-bench-" + std::to_string(getpid()));
    xdg::QtDispatch dispatch(1);
    NoLogin login;
    XdgDefaults defaults(dir.string(), log);
    Prefs prefs(defaults, login, log);
    DesktopEntries entries;
    X11Windows access(std::move(background), screens, entries, dispatch, log, getpid(),
                      "org.tarnwick.Bench");
    WindowMover mover(access, screens, prefs);
    const auto displays = Displays::all(screens);

    const auto start = Clock::now();
    const auto windows = mover.windows();
    const auto listed = Clock::now();
    const auto tripsListing = access.roundTrips();
    const auto result = mover.moveAll(displays[1], displays, Placement::keepSize, windows);
    const auto moved = Clock::now();
    const double applied = settle(*watch, ids, edge, start);
    std::filesystem::remove_all(dir);
    std::printf("ours windows=%zu listed=%zu moved=%lld list_ms=%.2f move_ms=%.2f client_ms=%.2f "
                "end_to_end_ms=%.1f round_trips_listing=%llu round_trips_total=%llu\n",
                ids.size(), windows.size(), static_cast<long long>(result.moved), ms(start, listed),
                ms(listed, moved), ms(start, moved), applied,
                static_cast<unsigned long long>(tripsListing),
                static_cast<unsigned long long>(access.roundTrips()));
    return applied < 0 ? 1 : 0;
}
