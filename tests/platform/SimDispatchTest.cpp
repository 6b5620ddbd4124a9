#include "platform/sim/SimDispatch.h"

#include "platform/sim/Transcript.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using tarnwick::QoS;
using tarnwick::sim::SimDispatch;
using tarnwick::sim::Transcript;

namespace {

int64_t at(double seconds) {
    return SimDispatch::micros(seconds);
}

} // namespace

TEST(SimDispatch, RunsInTimeOrderAndFifoAtEqualTimes) {
    SimDispatch d;
    Transcript t(d);
    d.after(1.0, [&] { t.line("late", ""); });
    d.after(0.5, [&] { t.line("early", ""); });
    d.main([&] { t.line("a", ""); });
    d.after(0, [&] { t.line("b", ""); });
    d.after(-3, [&] { t.line("c", ""); }); // never in the past
    d.main([&] {
        t.line("d", "");
        d.main([&] { t.line("posted by d", ""); }); // behind what is already due now
    });
    d.main([&] { t.line("e", ""); });
    d.after(0.5, [&] { t.line("early too", ""); });

    EXPECT_EQ(d.runUntil(at(2)), SimDispatch::Run::done);
    EXPECT_EQ(t.text(), "0.000 a\n0.000 b\n0.000 c\n0.000 d\n0.000 e\n0.000 posted by d\n"
                        "0.500 early\n0.500 early too\n1.000 late\n");
    EXPECT_EQ(d.nowMicros(), at(2)); // the clock is left at the end of the run
}

TEST(SimDispatch, CancelledWorkDoesNotRun) {
    SimDispatch d;
    std::vector<int> ran;
    auto one = d.after(1, [&] { ran.push_back(1); });
    auto two = d.after(2, [&] { ran.push_back(2); });
    d.after(0.5, [&] { two->cancel(); });
    d.runUntil(at(3));
    EXPECT_EQ(ran, std::vector<int>{1});
    one->cancel(); // too late: harmless
    EXPECT_TRUE(two->isCancelled());
}

TEST(SimDispatch, TimersRepeatAndRunsStopAtTheirEnd) {
    SimDispatch d;
    std::vector<double> ticks;
    d.every(1, [&] { ticks.push_back(d.now()); });
    d.runUntil(at(3.5));
    EXPECT_EQ(ticks, (std::vector<double>{1, 2, 3}));
    d.runUntil(at(5));
    EXPECT_EQ(ticks, (std::vector<double>{1, 2, 3, 4, 5}));

    EXPECT_EQ(d.runUntil(at(20), at(7.5)), SimDispatch::Run::deadline);
    EXPECT_EQ(d.nowMicros(), at(7.5));
    EXPECT_EQ(ticks.size(), 7u);
}

TEST(SimDispatch, AnEndlessChainAtOneInstantIsCaught) {
    SimDispatch d;
    std::function<void()> again = [&] { d.main(again); };
    d.main(again);
    EXPECT_EQ(d.runUntil(at(1)), SimDispatch::Run::runaway);
}

TEST(SimDispatch, BackgroundSleepInterleavesWithMainWorkByVirtualTime) {
    SimDispatch d;
    Transcript t(d);
    d.after(1.0, [&] { t.line("main", "at 1"); });
    d.after(1.5, [&] { t.line("main", "at 1.5"); });
    d.background(QoS::utility, [&] {
        EXPECT_FALSE(d.onMainThread());
        t.line("bg", "start");
        d.sleep(1.0);
        t.line("bg", "woke");
        d.main([&] { t.line("main", "from bg"); });
        d.sleep(1.0);
        t.line("bg", "done");
    });
    EXPECT_TRUE(d.onMainThread());
    d.runUntil(at(10));
    EXPECT_EQ(t.text(), "0.000 bg start\n"
                        "1.000 main at 1\n" // queued before the thread's wake-up
                        "1.000 bg woke\n"
                        "1.000 main from bg\n"
                        "1.500 main at 1.5\n"
                        "2.000 bg done\n");

    // Two threads sleeping the same time wake in the order they slept.
    Transcript u(d);
    for (auto name : {"first", "second"})
        d.background(QoS::userInitiated, [&, name] {
            d.sleep(0.25);
            u.line("bg", name);
        });
    d.runUntil(at(11));
    EXPECT_EQ(u.text(), "10.250 bg first\n10.250 bg second\n");
}

TEST(SimDispatch, ShutdownUnwindsASleepingThread) {
    struct Flag {
        bool& set;
        ~Flag() { set = true; }
    };
    bool unwound = false, woke = false, started = false, ranLater = false;
    SimDispatch d;
    d.background(QoS::utility, [&] {
        Flag f{unwound};
        d.sleep(100);
        woke = true;
    });
    d.runUntil(at(1));
    d.background(QoS::utility, [&] { started = true; }); // its turn never comes
    EXPECT_FALSE(unwound);
    d.shutdown();
    EXPECT_TRUE(unwound);
    EXPECT_FALSE(woke || started);

    d.main([&] { ranLater = true; });
    d.background(QoS::utility, [&] { ranLater = true; });
    d.runUntil(at(200));
    EXPECT_FALSE(ranLater);
}

TEST(SimDispatch, TheClockNeverOverflowsAndTheCoreMayNotAskForEndlessDelays) {
    EXPECT_EQ(SimDispatch::micros(std::nan("")), 0);
    EXPECT_EQ(SimDispatch::micros(1e300), SimDispatch::micros(1e15));
    EXPECT_EQ(SimDispatch::micros(-1e300), -SimDispatch::micros(1e300));
    EXPECT_GT(SimDispatch::micros(1e300), int64_t{1} << 61);
    EXPECT_LT(SimDispatch::micros(1e300), INT64_MAX / 2);

    // A delay the core hands over unbounded ends the run with its name.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto handed = [](double seconds) {
        SimDispatch d;
        d.after(seconds, [] {});
    };
    EXPECT_DEATH(handed(std::nan("")), "Dispatch::after was handed a delay of nan s");
    EXPECT_DEATH(handed(86400.5), "Dispatch::after was handed a delay of 86400.5 s");
    EXPECT_DEATH(
        {
            SimDispatch d;
            d.every(std::numeric_limits<double>::infinity(), [] {});
        },
        "Dispatch::every was handed a delay of inf s");
    SimDispatch d;
    bool ran = false;
    d.after(-5, [&] { ran = true; }); // negative counts as now
    d.after(86400, [] {});
    d.runUntil(0);
    EXPECT_TRUE(ran);
}
