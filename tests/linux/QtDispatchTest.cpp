// The real program's threads and time: ordering on the main thread, timers
// that can be called off, and the core's saves, restores and preference
// writes at once on real threads (the simulated desktop runs one thread at a
// time, so only here can a missing lock show).
#include "platform/linux/QtDispatch.h"
#include "layouts/Layouts.h"
#include "platform/linux/XdgDefaults.h"
#include "prefs/Prefs.h"
#include "tests/linux/RecordingLog.h"
#include "tests/linux/TempDir.h"
#include "windows/WindowMover.h"

#include <QCoreApplication>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <thread>

namespace tarnwick::xdg {
namespace {

QCoreApplication& qtApp() {
    static int argc = 1;
    static char name[] = "tarnwick_x11_tests";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    return app;
}

// Runs the event loop until `done` or 10 s, whichever is first.
void runUntil(const std::function<bool()>& done) {
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (done()) QCoreApplication::quit();
    });
    poll.start(5);
    QTimer::singleShot(10000, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
}

TEST(QtDispatch, MainRunsInPostingOrderLaterAndTimersCanBeCalledOff) {
    qtApp();
    QtDispatch dispatch(2);
    std::vector<int> order;
    bool inline_ = true;
    for (int i = 0; i < 5; ++i)
        dispatch.main([&, i] { order.push_back(i); });
    inline_ = order.empty();
    auto cancelled = dispatch.after(0.01, [&] { order.push_back(100); });
    cancelled->cancel();
    dispatch.after(0.02, [&] { order.push_back(6); });
    dispatch.after(0.01, [&] { order.push_back(5); });
    int ticks = 0;
    WorkHandle every;
    every = dispatch.every(0.005, [&] {
        if (++ticks == 3) every->cancel();
    });
    runUntil([&] { return order.size() >= 7 && ticks >= 3; });
    EXPECT_TRUE(inline_) << "main() ran its work before returning";
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(ticks, 3) << "a cancelled repeating timer stops";
}

TEST(QtDispatch, BackgroundWorkComesBackToTheMainThread) {
    qtApp();
    QtDispatch dispatch(1);
    std::atomic<int> started{0};
    std::vector<std::string> finished;
    // With one thread busy, a user's command overtakes a snapshot queued before it.
    dispatch.background(QoS::utility, [&] {
        ++started;
        dispatch.sleep(0.05);
        dispatch.main([&] { finished.push_back("first"); });
    });
    while (started == 0)
        std::this_thread::yield();
    dispatch.background(QoS::utility,
                        [&] { dispatch.main([&] { finished.push_back("snapshot"); }); });
    dispatch.background(QoS::userInitiated,
                        [&] { dispatch.main([&] { finished.push_back("command"); }); });
    runUntil([&] { return finished.size() == 3; });
    EXPECT_EQ(finished, (std::vector<std::string>{"first", "command", "snapshot"}));
}

// Ends the test program if `body` has not returned within `seconds`: a
// deadlock fails the test rather than hanging the run.
void withinSeconds(int seconds, const char* what, const std::function<void()>& body) {
    std::mutex m;
    std::condition_variable cv;
    bool finished = false;
    std::thread watchdog([&] {
        std::unique_lock lock(m);
        if (!cv.wait_for(lock, std::chrono::seconds(seconds), [&] { return finished; })) {
            std::fprintf(stderr, "FAILED: %s did not return within %d s (a deadlock)\n", what,
                         seconds);
            std::_Exit(1);
        }
    });
    body();
    {
        std::lock_guard lock(m);
        finished = true;
    }
    cv.notify_one();
    watchdog.join();
}

// Work that is dropped lets go of what it holds, and that may post again: a
// layout save's closure holding the last reference to an object whose
// destructor hands a line to the main thread.
TEST(QtDispatch, ShutdownDropsWorkWhoseDestructorPostsWithoutDeadlock) {
    qtApp();
    struct PostsWhenGone {
        PostsWhenGone(QtDispatch& d, std::atomic<int>& g)
            : dispatch(d)
            , gone(g) {}
        QtDispatch& dispatch;
        std::atomic<int>& gone;
        ~PostsWhenGone() {
            dispatch.main([] {});
            dispatch.background(QoS::utility, [] {});
            ++gone;
        }
    };
    std::atomic<int> gone{0};
    withinSeconds(5, "shutdown", [&] {
        QtDispatch dispatch(1);
        // The only thread is busy until the queued work below has been dropped.
        std::atomic<bool> busy{false};
        dispatch.background(QoS::userInitiated, [&] {
            busy = true;
            const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(3);
            while (gone == 0 && std::chrono::steady_clock::now() < until)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        });
        while (!busy)
            std::this_thread::yield();
        auto holder = [&] { return std::make_shared<PostsWhenGone>(dispatch, gone); };
        dispatch.background(QoS::utility, [h = holder()] {});
        dispatch.main([h = holder()] {});
        dispatch.after(60, [h = holder()] {});
        dispatch.shutdown();
    });
    EXPECT_EQ(gone, 3);
}

// Other applications' windows that answer from any thread.
class LockedWindows : public WindowAccess {
  public:
    struct Win : WindowHandle {
        Rect frame;
        std::string title;
    };
    LockedWindows() {
        for (int pid = 1; pid <= 3; ++pid) {
            auto app = std::make_shared<RunningApp>();
            app->pid = pid;
            app->identifier = "org.example.app" + std::to_string(pid);
            apps_.push_back(app);
            for (int i = 0; i < 4; ++i) {
                auto w = std::make_shared<Win>();
                w->frame = {100.0 * i, 50.0 * pid, 400, 300};
                w->title = "window " + std::to_string(i);
                windows_[pid].push_back(w);
            }
        }
    }
    std::optional<std::string> ownIdentifier() override { return "org.tarnwick.Tarnwick"; }
    std::vector<AppWindow> list(const std::function<bool(const RunningApp&)>& wanted) override {
        std::lock_guard lock(mutex_);
        std::vector<AppWindow> out;
        for (const auto& app : apps_) {
            if (!wanted(*app)) continue;
            for (const auto& w : windows_[app->pid])
                out.push_back({app, w, w->frame, w->title});
        }
        return out;
    }
    void place(const WindowRef& window, const Rect& frame) override {
        std::lock_guard lock(mutex_);
        static_cast<Win*>(window.get())->frame = frame;
    }
    bool setFullscreen(const WindowRef&, bool) override { return false; }
    void setMaximized(const WindowRef&, bool) override {}
    std::optional<Rect> frame(const WindowRef& window) override {
        std::lock_guard lock(mutex_);
        return static_cast<Win*>(window.get())->frame;
    }

  private:
    std::mutex mutex_;
    std::vector<AppRef> apps_;
    std::map<int32_t, std::vector<std::shared_ptr<Win>>> windows_;
};

class TwoScreens : public Screens {
  public:
    std::vector<ScreenInfo> screens() override {
        return {{.number = 1,
                 .name = "eDP-1",
                 .frame = {0, 0, 1440, 900},
                 .visibleFrame = {0, 0, 1440, 900}},
                {.number = 2,
                 .name = "DP-1",
                 .frame = {1440, -180, 1920, 1080},
                 .visibleFrame = {1440, -180, 1920, 1080}}};
    }
    bool isBuiltin(uint32_t id) override { return id == 1; }
    std::optional<std::vector<uint32_t>> activeDisplayList() override {
        return std::vector<uint32_t>{1, 2};
    }
    Point mouseLocation() override { return {}; }
    std::optional<size_t> mainScreen() override { return 0; }
    BuiltinWords builtinWords() override { return {}; }
};

struct NoLogin : LoginItems {
    bool enabled() override { return false; }
    std::optional<std::string> registerApp() override { return std::nullopt; }
    std::optional<std::string> unregisterApp() override { return std::nullopt; }
};

TEST(QtDispatch, SavesRestoresAndPreferenceWritesAtOnce) {
    qtApp();
    test::TempDir dir;
    test::RecordingLog log;
    NoLogin login;
    LockedWindows windows;
    TwoScreens screens;
    QtDispatch dispatch(4);
    XdgDefaults defaults(dir.path(), log);
    Prefs prefs(defaults, login, log);
    WindowMover mover(windows, screens, prefs);
    Layouts layouts(defaults, screens, mover);

    constexpr int rounds = 12;
    std::atomic<int> done{0};
    for (int i = 0; i < rounds; ++i) {
        dispatch.background(QoS::utility, [&] {
            layouts.save();
            ++done;
        });
        dispatch.background(QoS::userInitiated, [&] {
            layouts.restore(mover.windows());
            ++done;
        });
        // The settings window writes while the engine reads the same preferences.
        dispatch.main([&, i] {
            prefs.setPlacement(i % 2 ? Placement::scale : Placement::keepSize);
            prefs.setExcluded(i % 3 ? std::vector<std::string>{"org.example.app2"}
                                    : std::vector<std::string>{});
            prefs.setDelay(1.0 + i);
            ++done;
        });
    }
    runUntil([&] { return done == 3 * rounds; });
    dispatch.shutdown();
    ASSERT_EQ(done, 3 * rounds);
    const auto store = layouts.load();
    ASSERT_EQ(store.size(), 1u) << "one setup, saved again and again";
    EXPECT_FALSE(store.begin()->second.empty());
    EXPECT_EQ(prefs.delay(), rounds);
}

} // namespace
} // namespace tarnwick::xdg
