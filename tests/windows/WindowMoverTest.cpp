#include "windows/WindowMover.h"

#include "platform/sim/SimEngine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <set>

using namespace tarnwick;
using tarnwick::sim::SimDesktop;
using tarnwick::sim::SimDispatch;
using tarnwick::sim::Transcript;
using Window = SimDesktop::Window;

namespace {

struct World : tarnwick::sim::SimEngine {

    void app(int32_t pid, const std::string& name, std::optional<std::string> bundle,
             AppKind policy = AppKind::regular, bool slow = false) {
        desk.addApp({pid, name, std::move(bundle), policy, slow});
    }
    void window(const Window& w) { desk.addWindow(w, false, false); }
    // A laptop panel and, to its right with tops aligned, the monitor windows move to.
    std::vector<Display> laptopAndDesk() {
        desk.addScreen({1, "Built-in", {0, 0, 1440, 900}, {0, 0, 1440, 875}, true});
        desk.addScreen({2, "Desk", {1440, -540, 2560, 1440}, {1440, -540, 2560, 1415}});
        return Displays::all(desk);
    }
    template <typename F> int64_t blocking(F&& fn) {
        const auto took = offMain(std::forward<F>(fn));
        EXPECT_TRUE(took) << "still blocked after 600 s";
        return took.value_or(-1);
    }
    std::vector<AppWindow> windows() {
        std::vector<AppWindow> list;
        blocking([&] { list = mover.windows(); });
        return list;
    }
};

const Rect laptopVisible{0, 25, 1440, 875};
const Rect deskVisible{1440, 25, 2560, 1415};

} // namespace

TEST(WindowMover, PlaceKeepSize) {
    struct Case {
        const char* what;
        Rect window, source, dest, want; // `want` as written
    };
    const Rect L = laptopVisible, D = deskVisible, big{0, 0, 3000, 2000};
    const std::vector<Case> cases{
        {"worked example", {100, 125, 800, 600}, L, D, {1715, 321, 800, 600}},
        {"flush top-left", {0, 25, 800, 600}, L, D, {1440, 25, 800, 600}},
        {"flush bottom-right", {640, 300, 800, 600}, L, D, {3200, 840, 800, 600}},
        {"sticking out: pulled inside", {1000, -300, 800, 600}, L, D, {3200, 25, 800, 600}},
        {"larger than the destination", {500, 300, 2000, 1500}, big, L, L},
        {"larger than both", {10, 35, 3000, 1600}, L, D, D},
        {"as wide as its screen: room 1", {0.5, 25, 1440, 600}, L, D, {2000, 25, 1440, 600}},
        {"half a point of room: 1", {0.25, 25, 1439.5, 600}, L, D, {1720, 25, 1440, 600}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(WindowMover::landing(c.window, c.source, c.dest, Placement::keepSize), c.want)
            << c.what;
}

TEST(WindowMover, PlaceScaleAndFill) {
    auto expectNear = [](const Rect& got, const Rect& want, const char* what) {
        EXPECT_NEAR(got.x, want.x, 1e-9) << what;
        EXPECT_NEAR(got.y, want.y, 1e-9) << what;
        EXPECT_NEAR(got.w, want.w, 1e-9) << what;
        EXPECT_NEAR(got.h, want.h, 1e-9) << what;
    };
    const Rect w{100, 125, 800, 600};
    expectNear(WindowMover::place(w, laptopVisible, deskVisible, Placement::scale),
               {1617.7777777777778, 186.71428571428572, 1422.2222222222222, 970.2857142857143},
               "widths by 2560/1440, heights by 1415/875");
    expectNear(WindowMover::place({0, 25, 720, 875}, laptopVisible, deskVisible, Placement::scale),
               {1440, 25, 1280, 1415}, "the left half stays the left half");
    expectNear(WindowMover::place({-100, 900, 200, 200}, {0, 0, 1000, 1000}, {0, 0, 2000, 500},
                                  Placement::scale),
               {-200, 450, 400, 100}, "no clamping");
    EXPECT_EQ(WindowMover::place(w, laptopVisible, deskVisible, Placement::fill), deskVisible);
    EXPECT_EQ(WindowMover::place({5000, 5000, 1, 1}, deskVisible, laptopVisible, Placement::fill),
              laptopVisible);
}

TEST(WindowMover, LandingIsAlwaysADrawableFrameOnTheDestination) {
    const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
    const Rect L = laptopVisible, D = deskVisible;
    struct Case {
        const char* what;
        Rect window, source;
        Placement placement;
        std::optional<Rect> want;
    };
    const std::vector<Case> cases{
        {"scale, as usual", {0, 25, 720, 875}, L, Placement::scale, Rect{1440, 25, 1280, 1415}},
        {"scale from a source without area keeps the size",
         {100, 125, 800, 600},
         {0, 25, 0, 0},
         Placement::scale,
         Rect{3200, 840, 800, 600}},
        {"scale from a source without width",
         {100, 125, 800, 600},
         {0, 25, 0, 875},
         Placement::scale,
         Rect{3200, 321, 800, 600}},
        {"coordinates near the largest double",
         {1e308, 1e308, 800, 600},
         L,
         Placement::scale,
         Rect{3200, 840, 800, 600}},
        {"a size near the largest double", {0, 25, 1.5e308, 1.5e308}, L, Placement::scale, D},
        {"keep size far out",
         {1e308, -1e308, 800, 600},
         L,
         Placement::keepSize,
         Rect{3200, 25, 800, 600}},
        {"a window without a size", {100, 125, 0, 0}, L, Placement::keepSize, std::nullopt},
        {"a window of negative size", {100, 125, -800, 600}, L, Placement::scale, std::nullopt},
        {"a window that is not a number",
         {nan, 125, 800, 600},
         L,
         Placement::keepSize,
         std::nullopt},
        {"an endless window", {0, 25, inf, 600}, L, Placement::scale, std::nullopt},
        {"fill needs nothing of the window", {nan, nan, nan, nan}, L, Placement::fill, D},
    };
    for (const auto& c : cases) {
        const auto got = WindowMover::landing(c.window, c.source, D, c.placement);
        EXPECT_EQ(got, c.want) << c.what;
        if (got) {
            EXPECT_TRUE(got->isFinite()) << c.what;
            EXPECT_GT(intersect(*got, D).area(), 0) << c.what;
        }
    }
    // A destination without area takes no window at all, nor one whose area
    // rounds away: thinner than a point, or where doubles are a point apart.
    for (const Rect& thin :
         {Rect{1440, 25, 0, 1415}, Rect{1440, 1440, 2560, 1e-300}, Rect{1440, 1e300, 2560, 1415}})
        for (auto placement : {Placement::keepSize, Placement::scale, Placement::fill})
            EXPECT_EQ(WindowMover::landing({0, 25, 800, 600}, L, thin, placement), std::nullopt)
                << thin.y << " " << thin.h;
}

// Whole points by the nearest, never outwards: a window moved from a usable
// area whose proportions put it between points must not grow on every move.
TEST(WindowMover, LandingRoundsToTheNearestPointAndKeepsTheSize) {
    const Rect S{0, 25, 1440, 875}, T{1440, 0, 1920, 1080};
    struct Case {
        const char* what;
        Rect window;
        Placement placement;
        Rect want;
    };
    const std::vector<Case> cases{
        // Room 840 x 275 on S, 1320 x 480 on T: 100/840 of 1320 is 157.14.
        {"keep size, origin down",
         {100, 125, 600, 600},
         Placement::keepSize,
         {1597, 175, 600, 600}},
        // 200/840 of 1320 is 314.29; 150/275 of 480 is 261.82.
        {"keep size, origin up", {200, 175, 600, 600}, Placement::keepSize, {1754, 262, 600, 600}},
        // Half of the 481 points of room is 240.5.
        {"keep size, half a point rounds up",
         {0.5, 25, 1439, 600},
         Placement::keepSize,
         {1681, 0, 1439, 600}},
        // 1920/1440 and 1080/875: 100 x 125 from the corner is 133.33 x 154.29
        // away, 800 x 600 becomes 1066.67 x 740.57.
        {"scale", {100, 150, 800, 600}, Placement::scale, {1573, 154, 1067, 741}},
        {"fill a fractional area", {0, 0, 1, 1}, Placement::fill, {1440, 0, 1920, 1080}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(WindowMover::landing(c.window, S, T, c.placement), c.want) << c.what;
    EXPECT_EQ(WindowMover::landing({0, 0, 1, 1}, S, {10.4, 20.6, 99.5, 50.2}, Placement::fill),
              (Rect{10, 21, 100, 50}));

    // There and back, again and again: the size never changes and, starting
    // on the display with less room, nor does the place.
    Rect w{123, 77, 602, 425};
    for (int trip = 0; trip < 11; ++trip) {
        w = WindowMover::landing(w, S, T, Placement::keepSize).value();
        EXPECT_EQ(w.w, 602);
        EXPECT_EQ(w.h, 425);
        w = WindowMover::landing(w, T, S, Placement::keepSize).value();
    }
    EXPECT_EQ(w, (Rect{123, 77, 602, 425}));
}

TEST(WindowMover, Summary) {
    using R = WindowMover::MoveResult;
    const std::string dot = " \u00b7 ";
    EXPECT_EQ((R{1, 0, false}).summary("Desk"), "Moved 1 window to Desk");
    EXPECT_EQ((R{0, 0, false}).summary("Desk"), "Moved 0 windows to Desk");
    EXPECT_EQ((R{12, 0, false}).summary("Desk"), "Moved 12 windows to Desk");
    EXPECT_EQ((R{2, 2, false}).summary("Desk"),
              "Moved 2 windows to Desk" + dot + "2 couldn't go back to full screen");
    EXPECT_EQ((R{0, 0, true}).summary("Desk"),
              "Moved 0 windows to Desk" + dot + "stopped because the display was disconnected");
    EXPECT_EQ((R{3, 1, true}).summary("Desk"), "Moved 3 windows to Desk" + dot +
                                                   "1 couldn't go back to full screen" + dot +
                                                   "stopped because the display was disconnected");
}

TEST(WindowMover, MoveAllStopsWhenTheDestinationGoes) {
    World w;
    auto displays = w.laptopAndDesk();
    w.app(10, "Notes", "com.example.notes");
    for (auto title : {"A", "B", "C"})
        w.window({.pid = 10, .title = title, .frame = {100, 125, 800, 600}});
    const auto list = w.windows();

    std::vector<int64_t> reported;
    w.desk.unplug(2);
    WindowMover::MoveResult r;
    w.blocking([&] {
        r = w.mover.moveAll(
            displays[1], displays, Placement::keepSize, list,
            [&](int64_t done, int64_t, const std::string&) { reported.push_back(done); });
    });
    EXPECT_TRUE(r.targetLost);
    EXPECT_EQ(r.moved, 0);
    EXPECT_TRUE(reported.empty());
    // With nothing to move the destination is not even asked about.
    w.blocking([&] {
        r = w.mover.moveAll(displays[1], displays, Placement::fill, std::vector<AppWindow>{});
    });
    EXPECT_FALSE(r.targetLost || r.moved || r.leftWindowed);
    EXPECT_EQ(w.transcript.text(), "");

    // Unplugged while the first window is under way: that one is finished, no other is begun.
    w.desk.addScreen({2, "Desk", {1440, -540, 2560, 1440}, {1440, -540, 2560, 1415}});
    w.blocking([&] {
        r = w.mover.moveAll(displays[1], displays, Placement::keepSize, list,
                            [&](int64_t done, int64_t, const std::string&) {
                                reported.push_back(done);
                                w.desk.unplug(2);
                            });
    });
    EXPECT_EQ(reported, std::vector<int64_t>{1});
    EXPECT_EQ(r.summary("Desk"),
              "Moved 1 window to Desk \u00b7 stopped because the display was disconnected");
}

// Leaving full screen takes the better part of a second; a destination that
// goes meanwhile gets no frame, and the window is put back as it was.
TEST(WindowMover, AFullScreenWindowIsNotWrittenAfterItsDestinationWent) {
    World w;
    auto displays = w.laptopAndDesk();
    w.app(10, "Keynote", "com.example.keynote");
    w.window({.pid = 10, .title = "Talk", .frame = {0, 0, 1440, 900}, .fullscreen = true});
    w.window({.pid = 10, .title = "Notes", .frame = {100, 125, 800, 600}});
    const auto list = w.windows();
    ASSERT_EQ(list.size(), 2u);

    WindowMover::MoveResult r;
    w.blocking([&] {
        r = w.mover.moveAll(displays[1], displays, Placement::keepSize, list,
                            [&](int64_t done, int64_t, const std::string&) {
                                if (done == 1) w.dispatch.after(0.5, [&] { w.desk.unplug(2); });
                            });
    });
    EXPECT_EQ(r.summary("Desk"),
              "Moved 0 windows to Desk \u00b7 stopped because the display was disconnected");
    EXPECT_EQ(w.desk.findWindow(10, "Talk")->frame, (Rect{0, 0, 1440, 900}));
    EXPECT_TRUE(w.desk.findWindow(10, "Talk")->fullscreen);
    EXPECT_EQ(w.desk.findWindow(10, "Notes")->frame, (Rect{100, 125, 800, 600}));
    EXPECT_EQ(w.transcript.text().find("frame 10"), std::string::npos) << w.transcript.text();
}

TEST(WindowMover, MoveAllPlacesWindowsAndSkipsThoseAlreadyThere) {
    for (auto placement : {Placement::keepSize, Placement::fill}) {
        World w;
        auto displays = w.laptopAndDesk();
        w.app(10, "Mail", "com.example.mail");
        w.window({.pid = 10, .title = "Inbox", .frame = {100, 125, 800, 600}});
        w.app(11, "Notes", "com.example.notes");
        w.window({.pid = 11, .title = "Lost", .frame = {-5000, -5000, 300, 300}});
        w.app(12, "Safari", "com.example.safari");
        w.window({.pid = 12, .title = "There", .frame = {1600, 100, 800, 600}});
        w.app(13, "TV", "com.example.tv");
        w.window(
            {.pid = 13, .title = "Cinema", .frame = {1440, 0, 2560, 1440}, .fullscreen = true});

        std::vector<std::string> reported;
        WindowMover::MoveResult r;
        w.blocking([&] {
            r = w.mover.moveAll(displays[1], displays, placement, std::nullopt,
                                [&](int64_t done, int64_t total, const std::string& app) {
                                    reported.push_back(std::to_string(done) + "/" +
                                                       std::to_string(total) + " " + app);
                                });
        });
        const bool fill = placement == Placement::fill;
        EXPECT_EQ(reported,
                  (std::vector<std::string>{"1/4 Mail", "2/4 Notes", "3/4 Safari", "4/4 TV"}));
        EXPECT_EQ(r.moved, fill ? 3 : 2);
        EXPECT_FALSE(r.targetLost);
        EXPECT_EQ(w.desk.findWindow(10, "Inbox")->frame,
                  (fill ? deskVisible : Rect{1715, 321, 800, 600}));
        // Off every display it is on none, so it moves, from the nearest one.
        EXPECT_EQ(w.desk.findWindow(11, "Lost")->frame,
                  (fill ? deskVisible : Rect{1440, 25, 300, 300}));
        EXPECT_EQ(w.desk.findWindow(12, "There")->frame,
                  (fill ? deskVisible : Rect{1600, 100, 800, 600}));
        EXPECT_EQ(w.transcript.text().find("\"Cinema\""), std::string::npos);
    }
}

// A window manager's maximized state over the simulated desktop: the windows
// named are maximized to the usable area they stand on, and their own frame
// comes back when they leave the state.
class Maximizing : public WindowAccess {
  public:
    Maximizing(WindowAccess& inner, std::set<std::string> maximized, Rect area)
        : in_(inner)
        , maximized_(std::move(maximized))
        , area_(area) {}
    std::optional<std::string> ownIdentifier() override { return in_.ownIdentifier(); }
    std::vector<AppWindow> list(const std::function<bool(const RunningApp&)>& wanted) override {
        auto listed = in_.list(wanted);
        for (auto& w : listed) {
            titles_[w.ref.get()] = w.title;
            if (maximized_.count(w.title)) {
                w.maximized = true;
                w.frame = area_;
            }
        }
        return listed;
    }
    void place(const WindowRef& window, const Rect& frame) override {
        if (maximized_.count(titles_[window.get()]))
            log.push_back(titles_[window.get()] + " written while maximized");
        in_.place(window, frame);
    }
    bool setFullscreen(const WindowRef& window, bool on) override {
        return in_.setFullscreen(window, on);
    }
    void setMaximized(const WindowRef& window, bool on) override {
        const auto t = titles_[window.get()];
        if (on) {
            const auto f = in_.frame(window).value();
            log.push_back(t + " maximized from " + std::to_string(int(f.x)) + "," +
                          std::to_string(int(f.y)) + " " + std::to_string(int(f.w)) + "x" +
                          std::to_string(int(f.h)));
            maximized_.insert(t);
        } else {
            log.push_back(t + " restored");
            maximized_.erase(t);
        }
    }
    std::optional<Rect> frame(const WindowRef& window) override {
        if (maximized_.count(titles_[window.get()])) return area_;
        return in_.frame(window);
    }
    std::vector<std::string> log;

  private:
    WindowAccess& in_;
    std::set<std::string> maximized_;
    std::map<const WindowHandle*, std::string> titles_;
    Rect area_;
};

// A maximized window is taken out of the state, its own frame placed by the
// rule and maximized again there; one already on the destination is left.
TEST(WindowMover, AMaximizedWindowMovesMaximized) {
    for (auto placement : {Placement::keepSize, Placement::scale, Placement::fill}) {
        World w;
        auto displays = w.laptopAndDesk();
        w.app(10, "Mail", "com.example.mail");
        w.window({.pid = 10, .title = "Big", .frame = {100, 125, 800, 600}});
        w.window({.pid = 10, .title = "Plain", .frame = {0, 25, 400, 300}});
        w.window({.pid = 10, .title = "There", .frame = {1600, 100, 800, 600}});
        Maximizing access(w.desk, {"Big", "There"}, laptopVisible);
        WindowMover mover(access, w.desk, w.prefs);
        std::vector<AppWindow> list;
        w.blocking([&] { list = mover.windows(); });
        ASSERT_EQ(list.size(), 3u);
        EXPECT_TRUE(list[0].maximized);
        EXPECT_FALSE(list[1].maximized);
        // "There" reads as maximized on the laptop here; list it on the desk.
        list[2].frame = {1600, 100, 800, 600};
        WindowMover::MoveResult r;
        w.blocking([&] { r = mover.moveAll(displays[1], displays, placement, list); });
        EXPECT_EQ(r.moved, 2);
        const Rect big =
            WindowMover::landing({100, 125, 800, 600}, laptopVisible, deskVisible, placement)
                .value();
        EXPECT_EQ(w.desk.findWindow(10, "Big")->frame, big);
        EXPECT_EQ(access.log,
                  (std::vector<std::string>{"Big restored", "Big maximized from " +
                                                                std::to_string(int(big.x)) + "," +
                                                                std::to_string(int(big.y)) + " " +
                                                                std::to_string(int(big.w)) + "x" +
                                                                std::to_string(int(big.h))}));
    }
}
