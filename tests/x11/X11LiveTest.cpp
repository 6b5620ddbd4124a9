// The x11 ports against a real X server: the test desktop's, which
// tests/desktop/x11-live.sh starts (its monitors plug in through xrandr).
// Windows made here are override-redirect, so the window manager leaves
// them and their states alone, and are listed by writing _NET_CLIENT_LIST
// ourselves.
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/QtDispatch.h"
#include "platform/x11/X11Notifications.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/X11Windows.h"
#include "platform/x11/XConnection.h"

#include <QCoreApplication>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace tarnwick::x11 {
namespace {

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point t) {
    return std::chrono::duration<double, std::milli>(Clock::now() - t).count();
}

// Runs the event loop until `done` or `seconds`, whichever is first.
void runUntil(const std::function<bool()>& done, double seconds = 5) {
    const auto until = Clock::now() + std::chrono::duration<double>(seconds);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (done() || Clock::now() >= until) QCoreApplication::quit();
    });
    poll.start(2);
    QCoreApplication::exec();
}

// A log that, like the port's contract says, only the main thread writes:
// it keeps each line's thread and has no lock, so that ThreadSanitizer sees
// a line written from anywhere else.
class MainThreadLog : public SystemLog {
  public:
    struct Line {
        std::thread::id thread;
        std::string text;
    };
    void status(const std::string& text) override { line(text); }
    void line(const std::string& text) override {
        lines.push_back({std::this_thread::get_id(), text});
    }
    std::vector<Line> lines;
};

std::unique_ptr<XConnection> connect() {
    std::string error;
    auto x = XConnection::open(nullptr, error);
    if (!x) ADD_FAILURE() << error;
    return x;
}

void sync(XConnection& x) {
    free(xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
}

// An unmanaged window with the properties a listing reads.
xcb_window_t makeWindow(XConnection& x, int32_t pid, const std::string& title, bool maximized) {
    auto* c = x.get();
    const xcb_window_t id = xcb_generate_id(c);
    const uint32_t values[] = {1}; // override-redirect
    xcb_create_window(c, XCB_COPY_FROM_PARENT, id, x.root(), 100, 100, 400, 300, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      values);
    xcb_ewmh_set_wm_pid(&x.ewmh(), id, static_cast<uint32_t>(pid));
    xcb_ewmh_set_wm_name(&x.ewmh(), id, static_cast<uint32_t>(title.size()), title.data());
    const char wmClass[] = "livetest\0LiveTest";
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        sizeof wmClass, wmClass);
    if (maximized) {
        xcb_atom_t state[] = {x.ewmh()._NET_WM_STATE_MAXIMIZED_VERT,
                              x.ewmh()._NET_WM_STATE_MAXIMIZED_HORZ};
        xcb_ewmh_set_wm_state(&x.ewmh(), id, 2, state);
    }
    sync(x);
    return id;
}

// The windows made here stand in the client list for the test's length.
class ClientList {
  public:
    ClientList(XConnection& x, std::vector<xcb_window_t> ids)
        : x_(x) {
        xcb_ewmh_get_windows_reply_t list;
        if (xcb_ewmh_get_client_list_reply(
                &x.ewmh(), xcb_ewmh_get_client_list(&x.ewmh(), x.screenNumber()), &list, nullptr)) {
            saved_.assign(list.windows, list.windows + list.windows_len);
            xcb_ewmh_get_windows_reply_wipe(&list);
        }
        ids.insert(ids.begin(), saved_.begin(), saved_.end());
        xcb_ewmh_set_client_list(&x.ewmh(), x.screenNumber(), static_cast<uint32_t>(ids.size()),
                                 ids.data());
        sync(x);
    }
    ~ClientList() {
        xcb_ewmh_set_client_list(&x_.ewmh(), x_.screenNumber(),
                                 static_cast<uint32_t>(saved_.size()), saved_.data());
        sync(x_);
    }

  private:
    XConnection& x_;
    std::vector<xcb_window_t> saved_;
};

// The listing's windows of the application with `pid`, in client-list order.
std::vector<AppWindow> windowsOf(X11Windows& access, int32_t pid) {
    return access.list([pid](const RunningApp& app) { return app.pid == pid; });
}

constexpr int32_t otherPid = 4242;

// While the main thread waits for replies on the main connection (the trust
// check, the pointer, the screens), libxcb reads whatever events arrive
// meanwhile into its queue, where the socket no longer shows them. A busy
// main thread still sees each plug and unplug within the controller's settle
// time (0.6 s).
TEST(X11Live, PlugsAreSeenWhileTheMainConnectionWaitsForReplies) {
    auto x = connect();
    ASSERT_TRUE(x);
    MainThreadLog log;
    X11Screens screens(*x, log);
    X11Notifications notifications(*x, screens, log);
    std::atomic<int> changes{0};
    notifications.observe(PlatformEvent::displaysChanged, [&] { ++changes; });

    // A round trip after another for most of each millisecond.
    QTimer busy;
    QObject::connect(&busy, &QTimer::timeout, [&] {
        const auto until = Clock::now() + std::chrono::microseconds(900);
        while (Clock::now() < until)
            screens.mouseLocation();
    });
    busy.start(1);

    std::system("xrandr --addmode DUMMY3 1280x800 2>/dev/null");
    const char* steps[] = {
        "xrandr --output DUMMY3 --mode 1280x800 --right-of DUMMY0", "xrandr --output DUMMY3 --off",
        "xrandr --output DUMMY3 --mode 1280x800 --right-of DUMMY0", "xrandr --output DUMMY3 --off"};
    size_t expected = screens.monitors().size();
    for (const char* step : steps) {
        SCOPED_TRACE(step);
        expected = std::strstr(step, "--off") ? expected - 1 : expected + 1;
        // xrandr runs on a thread of its own while the loop goes on.
        std::atomic<bool> ran{false};
        Clock::time_point doneAt;
        std::thread xrandr([&] {
            ASSERT_EQ(std::system(step), 0);
            doneAt = Clock::now();
            ran = true;
        });
        runUntil([&] { return ran && screens.monitors().size() == expected; }, 3);
        xrandr.join();
        ASSERT_EQ(screens.monitors().size(), expected) << "the change was never seen";
        const double latency = msSince(doneAt);
        EXPECT_LT(latency, 600) << "seen only after the settle time";
        std::printf("%s: seen %.0f ms after xrandr returned\n", step, latency);
        runUntil([] { return false; }, 0.5); // the follow-up reads
    }
    EXPECT_GE(changes.load(), 4);
}

// Un-maximizing a window before its move waits for the window manager (here
// nobody answers: the full 0.3 s). Another thread's reads meanwhile go on.
TEST(X11Live, WaitingForAMaximizedWindowHoldsNoOtherCallUp) {
    auto x = connect();
    ASSERT_TRUE(x);
    const auto big = makeWindow(*x, otherPid, "Big", true);
    const auto small = makeWindow(*x, otherPid, "Small", false);
    ClientList listed(*x, {big, small});
    MainThreadLog log;
    X11Screens screens(*x, log);
    DesktopEntries entries;
    xdg::QtDispatch dispatch(1);
    X11Windows access(connect(), screens, entries, dispatch, log, getpid(), "org.tarnwick.Test");
    const auto windows = windowsOf(access, otherPid);
    ASSERT_EQ(windows.size(), 2u);

    std::atomic<bool> moving{false};
    double moveMs = 0;
    std::thread mover([&] {
        moving = true;
        const auto start = Clock::now();
        access.place(windows[0].ref, {20, 20, windows[0].frame.w, windows[0].frame.h});
        moveMs = msSince(start);
    });
    while (!moving)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const auto start = Clock::now();
    const auto frame = access.frame(windows[1].ref);
    const double readMs = msSince(start);
    mover.join();
    EXPECT_EQ(windows[1].title, "Small");
    EXPECT_TRUE(frame.has_value());
    EXPECT_GE(moveMs, 250) << "the move did not wait for the window to leave its state";
    EXPECT_LT(readMs, 100) << "a read waited " << readMs << " ms for another window's move";
    xcb_destroy_window(x->get(), big);
    xcb_destroy_window(x->get(), small);
    sync(*x);
}

// A window that goes after it was listed answers nothing: writes do nothing,
// its frame reads as unknown, and the wait for full screen ends at once
// rather than after its 5 s. Whatever is logged meanwhile reaches the main
// thread, which owns the log.
TEST(X11Live, AWindowGoneSinceItWasListedIsLeftAlone) {
    auto x = connect();
    ASSERT_TRUE(x);
    const auto gone = makeWindow(*x, otherPid, "Gone", false);
    ClientList listed(*x, {gone});
    MainThreadLog log;
    X11Screens screens(*x, log);
    DesktopEntries entries;
    xdg::QtDispatch dispatch(1);
    X11Windows access(connect(), screens, entries, dispatch, log, getpid(), "org.tarnwick.Test");
    const auto windows = windowsOf(access, otherPid);
    ASSERT_EQ(windows.size(), 1u);
    xcb_destroy_window(x->get(), gone);
    sync(*x);

    std::atomic<bool> done{false};
    std::optional<Rect> frame = Rect{};
    bool fullscreen = true;
    double fullscreenMs = 0;
    dispatch.background(QoS::userInitiated, [&] {
        access.place(windows[0].ref, {20, 20, 300, 200});
        access.setMaximized(windows[0].ref, false);
        frame = access.frame(windows[0].ref);
        const auto start = Clock::now();
        fullscreen = access.setFullscreen(windows[0].ref, true);
        fullscreenMs = msSince(start);
        done = true;
    });
    // The main thread writes its own lines meanwhile.
    for (int i = 0; i < 20 && !done; ++i) {
        log.line("main thread");
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    runUntil([&] { return done.load(); });
    ASSERT_TRUE(done);
    EXPECT_FALSE(frame);
    EXPECT_FALSE(fullscreen);
    EXPECT_LT(fullscreenMs, 1000);
    for (const auto& l : log.lines)
        EXPECT_EQ(l.thread, std::this_thread::get_id())
            << "written off the main thread: " << l.text;
    dispatch.shutdown();
}

} // namespace
} // namespace tarnwick::x11

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!std::getenv("DISPLAY")) {
        std::fprintf(stderr, "needs the test desktop: run tests/desktop/x11-live.sh\n");
        return 1;
    }
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
