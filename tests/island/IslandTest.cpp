#include "island/Island.h"

#include "platform/sim/SimEngine.h"
#include "platform/sim/SimSurfaces.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::sim::SimDispatch;
using Screen = tarnwick::sim::SimDesktop::Screen;

namespace {

// The presenter on a simulated desktop, with the move runner it hands moves to.
struct World : tarnwick::sim::SimEngine {
    Platform platform = desk.platform();
    Status status{platform.log};
    MoveRunner runner{dispatch, status, prefs, mover, layouts};
    std::vector<std::string> args{"/Applications/Tarnwick.app/Contents/MacOS/Tarnwick"};
    std::optional<Island> island;
    // Every phase the current island showed, as the transcript writes it.
    std::vector<std::string> phases;
    Subscription watching;

    Island& start() {
        island.emplace(Island::Parts{platform, prefs, mover, runner, args});
        return *island;
    }
    void laptop(std::optional<Size> notch = Size{200, 32}) {
        desk.addScreen({1, "Built-in", {0, 0, 1512, 982}, {0, 0, 1512, 949}, true, notch});
    }
    Display studio() {
        desk.addScreen({2, "Studio", {1512, 0, 2560, 1440}, {1512, 0, 2560, 1415}});
        return Displays::all(desk).back();
    }
    void windows(int n) {
        desk.addApp({10, "Mail", "com.apple.mail"});
        for (int i = 1; i <= n; ++i)
            desk.addWindow({.pid = 10,
                            .title = "W" + std::to_string(i),
                            .frame = {100.0 + i * 10, 100, 600, 400}},
                           false, false);
    }
    void follow() {
        auto m = island->current();
        ASSERT_TRUE(m);
        phases.push_back(describePhase(m->phase()));
        watching = m->observe([this, m] {
            auto p = describePhase(m->phase());
            if (phases.back() != p) phases.push_back(p);
        });
    }
    void until(double seconds) { dispatch.runUntil(SimDispatch::micros(seconds)); }
    std::string phase() {
        auto m = island->current();
        return m ? phaseName(m->phase()) : "none";
    }
    tarnwick::sim::SimPanel* panel() { return desk.surfaces().panel(); }
};

} // namespace

TEST(Island, AChoiceAfterAConnectAnnouncesThenChoosesThenMovesWindowByWindow) {
    World w;
    w.laptop();
    auto target = w.studio();
    w.windows(4);
    w.start().choose(target, {target}, 0.3);
    w.follow();

    // The announcement stays up for 1.6 s although the windows were listed at 0.3 s.
    w.until(1.599);
    EXPECT_EQ(w.phase(), "announce(connected)");
    w.until(1.6);
    ASSERT_EQ(w.phase(), "choosing");
    EXPECT_EQ(w.island->current()->selectedCount(), 4);

    w.island->move(w.island->current(), Selection::selected);
    w.until(10);
    EXPECT_EQ(w.phases, (std::vector<std::string>{
                            "announce(connected)",
                            "choosing",
                            "moving \"Starting\u2026\" 0",
                            "moving \"Moving 1 of 4 \u00b7 Mail\" 0.125",
                            "moving \"Moving 2 of 4 \u00b7 Mail\" 0.375",
                            "moving \"Moving 3 of 4 \u00b7 Mail\" 0.625",
                            "moving \"Moving 4 of 4 \u00b7 Mail\" 0.875",
                            "done(ok) \"Moved 4 windows to Studio\"",
                        }));
    EXPECT_EQ(w.status.text(), "Moved 4 windows to Studio");
    EXPECT_EQ(w.phase(), "none");
    EXPECT_FALSE(w.panel());
}

TEST(Island, ALongSettleKeepsTheAnnouncementUntilTheWindowsAreListed) {
    World w;
    w.laptop();
    auto target = w.studio();
    w.start().choose(target, {target}, 2.0);
    w.until(1.9);
    EXPECT_EQ(w.phase(), "announce(connected)");
    w.until(2.0);
    EXPECT_EQ(w.phase(), "choosing");

    // Opened by hand, or with announcements off: the list loads at once.
    w.island->choose(target, {}, 0);
    EXPECT_EQ(w.phase(), "loading");
    w.until(2.0);
    EXPECT_EQ(w.phase(), "choosing");
}

TEST(Island, AReplacedIslandsLateStepsChangeNothing) {
    World w;
    w.laptop();
    auto target = w.studio();
    w.windows(2);
    w.start().choose(target, {target}, 0.3);
    auto first = w.island->current();
    w.until(1.0);
    // The second choice takes the first panel away at once; the first
    // listing's result, due at 1.6 s, is dropped.
    w.island->choose(target, {}, 5.0);
    EXPECT_EQ(w.desk.surfaces().panels().size(), 1u);
    w.until(2.0);
    EXPECT_EQ(phaseName(first->phase()), "announce(connected)");
    EXPECT_TRUE(first->items().empty());
    EXPECT_EQ(w.phase(), "loading");

    // Closing twice orders the panel out once.
    w.island->close(Closing::animated);
    w.island->close(Closing::animated);
    w.until(2.45);
    EXPECT_FALSE(w.panel());
    const auto& t = w.transcript.text();
    size_t outs = 0;
    for (auto at = t.find("panel out"); at != std::string::npos; at = t.find("panel out", at + 1))
        ++outs;
    EXPECT_EQ(outs, 2u);

    // An announcement about nothing shows nothing.
    w.island->announce({}, Link::disconnected, {target});
    EXPECT_EQ(w.phase(), "none");
}

TEST(Island, HangsBelowTheMenuBarWithoutANotchAndNowhereWithoutAScreen) {
    auto placed = [](auto setup) {
        World w;
        setup(w);
        w.start().announce({{9, "X"}}, Link::connected, {});
        auto m = w.island->current();
        auto* p = w.panel();
        return m && p ? tarnwick::sim::formatRect(p->frame()) + " notch " +
                            std::to_string(static_cast<int>(m->notch().w)) + "x" +
                            std::to_string(static_cast<int>(m->notch().h))
                      : std::string("nothing");
    };
    // A built-in screen without a housing, after an external one: below its menu bar.
    EXPECT_EQ(placed([](World& w) {
                  w.studio();
                  w.laptop(std::nullopt);
              }),
              "436,301,640,640 notch 0x0");
    EXPECT_EQ(placed([](World&) {}), "nothing");
}
