#include "displays/Displays.h"

#include "platform/sim/SimDesktop.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tarnwick;
using tarnwick::sim::SimDesktop;
using tarnwick::sim::SimDispatch;
using tarnwick::sim::Transcript;

namespace {

Display disp(uint32_t id, std::string name, Rect frame, bool builtin = false) {
    return {id, std::move(name), frame, frame, builtin};
}

std::vector<std::string> names(const std::vector<Display>& list) {
    std::vector<std::string> out;
    for (const auto& d : list)
        out.push_back(d.name);
    return out;
}

std::vector<uint32_t> ids(const std::vector<Display>& list) {
    std::vector<uint32_t> out;
    for (const auto& d : list)
        out.push_back(d.id);
    return out;
}

} // namespace

TEST(Displays, AllConvertsToTopLeftAgainstThePrimaryFrame) {
    SimDispatch dispatch;
    Transcript transcript(dispatch);
    SimDesktop desk(dispatch, transcript);
    EXPECT_TRUE(Displays::all(desk).empty());

    // Bottom-left rectangles: the primary is 1440 high with a Dock of 60 and a
    // menu bar of 25; one monitor sits above it, one to its right and lower.
    desk.addScreen({1, "Built-in", {0, 0, 2560, 1440}, {0, 60, 2560, 1355}, true});
    desk.addScreen({7, "Nameless", {-800, 0, 800, 600}, {-800, 0, 800, 600}, false, {}, true});
    desk.addScreen({2, "Above", {0, 1440, 1920, 1080}, {0, 1440, 1920, 1055}});
    desk.addScreen({3, "Right", {2560, -200, 1280, 1024}, {2560, -200, 1280, 1000}});

    auto all = Displays::all(desk);
    ASSERT_EQ(ids(all), (std::vector<uint32_t>{1, 2, 3})); // no id: left out, order kept
    EXPECT_EQ(all[0], (Display{1, "Built-in", {0, 0, 2560, 1440}, {0, 25, 2560, 1355}, true}));
    EXPECT_EQ(all[1], (Display{2, "Above", {0, -1080, 1920, 1080}, {0, -1055, 1920, 1055}, false}));
    EXPECT_EQ(all[2], (Display{3, "Right", {2560, 616, 1280, 1024}, {2560, 640, 1280, 1000}}));
}

TEST(Displays, DisambiguateOrdersByXThenY) {
    struct Case {
        const char* what;
        std::vector<Display> in;
        std::vector<std::string> out;
    };
    const std::vector<Case> cases{
        {"by x, list order kept",
         {disp(1, "M", {3000, 0, 100, 100}), disp(2, "M", {0, 0, 100, 100}),
          disp(3, "M", {1500, 0, 100, 100})},
         {"M (3)", "M (1)", "M (2)"}},
        {"same x: by y",
         {disp(1, "M", {0, 500, 100, 100}), disp(2, "M", {0, -1080, 100, 100})},
         {"M (2)", "M (1)"}},
        {"same place: list order",
         {disp(5, "M", {0, 0, 100, 100}), disp(4, "M", {0, 0, 100, 100})},
         {"M (1)", "M (2)"}},
        {"only the shared name",
         {disp(1, "A", {0, 0, 100, 100}), disp(2, "M", {900, 0, 100, 100}),
          disp(3, "M", {100, 0, 100, 100})},
         {"A", "M (2)", "M (1)"}},
        {"suffix applied once",
         {disp(1, "M (1)", {0, 0, 1, 1}), disp(2, "M (1)", {5, 0, 1, 1})},
         {"M (1) (1)", "M (1) (2)"}},
        {"different names", {disp(1, "M", {0, 0, 1, 1}), disp(2, "m", {0, 0, 1, 1})}, {"M", "m"}},
    };
    for (const auto& c : cases) {
        auto out = Displays::disambiguate(c.in);
        EXPECT_EQ(names(out), c.out) << c.what;
        EXPECT_EQ(ids(out), ids(c.in)) << c.what;
    }
}

TEST(Displays, Target) {
    const auto builtin = disp(1, "Built-in", {0, 0, 3024, 1964}, true);
    const auto big = disp(2, "Monitor 27 (1)", {3024, 0, 2560, 1440});
    const auto small = disp(3, "Monitor 27 (2)", {-1920, 0, 1920, 1080});
    const auto sameArea = disp(4, "Tall", {0, -2560, 1440, 2560}); // 2560 x 1440 turned
    struct Case {
        const char* what;
        std::vector<Display> in;
        std::string preferred;
        std::optional<uint32_t> want;
    };
    const std::vector<Case> cases{
        {"preferred wins although smaller", {builtin, big, small}, "Monitor 27 (2)", 3},
        {"preferred gone: largest external", {builtin, big}, "Monitor 27 (2)", 2},
        {"no preference: built-in is never chosen over an external", {builtin, small}, "", 3},
        {"equal areas: earliest", {builtin, sameArea, big}, "", 4},
        {"equal areas, other order", {big, sameArea}, "", 2},
        {"only the built-in", {builtin}, "", 1},
        {"name match is exact", {builtin, big, small}, "monitor 27 (2)", 2},
        {"nothing connected", {}, "Built-in", std::nullopt},
    };
    for (const auto& c : cases) {
        auto t = Displays::target(c.in, c.preferred);
        EXPECT_EQ(t ? std::optional(t->id) : std::nullopt, c.want) << c.what;
    }
}

TEST(Displays, ConfigKey) {
    const Display a{1, "Built-in Display", {0, 0, 1512, 982}, {}, true};
    const Display b{2, "Monitor 27", {1512, 0, 2560, 1440}, {}, false};
    EXPECT_EQ(Displays::configKey({a, b}), "Built-in Display@1512x982 + Monitor 27@2560x1440");
    EXPECT_EQ(Displays::configKey({b, a}), Displays::configKey({a, b}));
    EXPECT_EQ(Displays::configKey({}), "");
    // Truncated, not rounded; positions and ids play no part.
    EXPECT_EQ(Displays::configKey({disp(9, "X", {-300, 77, 1512.9, 982.5})}), "X@1512x982");
    // Plain byte order: upper case before lower case, whatever the locale.
    EXPECT_EQ(Displays::configKey({disp(1, "b", {0, 0, 1, 1}), disp(2, "B", {0, 0, 1, 1})}),
              "B@1x1 + b@1x1");
    // Sizes beyond any integer type are still written in whole digits.
    EXPECT_EQ(Displays::configKey({disp(1, "M", {0, 0, 1e19, 900.7})}),
              "M@10000000000000000000x900");
    EXPECT_EQ(Displays::configKey({disp(1, "M", {0, 0, 123456789.9, 1e6})}), "M@123456789x1000000");
}

TEST(Displays, AScreenWithoutAreaIsNoDisplay) {
    SimDispatch dispatch;
    Transcript transcript(dispatch);
    SimDesktop desk(dispatch, transcript);
    const double inf = std::numeric_limits<double>::infinity();
    desk.addScreen({1, "Built-in", {0, 0, 1440, 900}, {0, 0, 1440, 875}, true});
    desk.addScreen({2, "Flat", {1440, 0, 0, 900}, {1440, 0, 0, 900}});
    desk.addScreen({3, "Inverted", {1440, 0, 1920, -1080}, {1440, 0, 1920, -1080}});
    desk.addScreen({4, "Endless", {1440, 0, inf, 1080}, {1440, 0, inf, 1080}});
    // A dock that claims the whole usable area leaves the screen itself.
    desk.addScreen({5, "Docked", {1440, 0, 1920, 1080}, {1440, 0, 1920, 0}});
    const auto all = Displays::all(desk);
    EXPECT_EQ(names(all), (std::vector<std::string>{"Built-in", "Docked"}));
    EXPECT_EQ(all.back().visible, all.back().frame);
}

TEST(Displays, Diff) {
    const auto builtin = disp(1, "Built-in", {0, 0, 1440, 900}, true);
    const auto a = disp(5, "A", {1440, 0, 1920, 1080});
    const auto b = disp(3, "B", {1440, 0, 2560, 1440});
    const auto c = disp(9, "C", {-1920, 0, 1920, 1080});

    auto d = Displays::diff(Displays::byId({builtin, a}), {builtin, b});
    EXPECT_EQ(ids(d.added), std::vector<uint32_t>{3});
    EXPECT_EQ(ids(d.removed), std::vector<uint32_t>{5});

    d = Displays::diff(Displays::byId({c, a, builtin}), {});
    EXPECT_TRUE(d.added.empty());
    EXPECT_EQ(ids(d.removed), (std::vector<uint32_t>{5, 9}));

    // The built-in panel coming and going, and a display renamed in place, are no change.
    d = Displays::diff(Displays::byId({a}), {builtin, disp(5, "A (1)", {0, 0, 10, 10})});
    EXPECT_TRUE(d.added.empty() && d.removed.empty());
    d = Displays::diff(Displays::byId({builtin, a}), {a});
    EXPECT_TRUE(d.added.empty() && d.removed.empty());

    d = Displays::diff({}, {c, builtin, b});
    EXPECT_EQ(ids(d.added), (std::vector<uint32_t>{9, 3})); // the new list's order
}

TEST(Displays, Containing) {
    const auto a = disp(1, "A", {0, 0, 1000, 800});
    const auto b = disp(2, "B", {1000, 0, 1000, 800});
    const std::vector<Display> both{a, b};
    struct Case {
        const char* what;
        Rect rect;
        std::optional<uint32_t> want;
    };
    const std::vector<Case> cases{
        {"inside A", {10, 10, 100, 100}, 1},
        {"half and half: earliest", {900, 100, 200, 100}, 1},
        {"mostly on B", {990, 100, 200, 100}, 2},
        {"touches A's left edge only", {-100, 100, 100, 100}, std::nullopt},
        {"touches B's right edge only", {2000, 0, 50, 50}, std::nullopt},
        {"wholly off-screen", {-5000, -5000, 100, 100}, std::nullopt},
        {"larger than both", {-10, -10, 3000, 1000}, 1},
    };
    for (const auto& c : cases) {
        auto d = Displays::containing(c.rect, both);
        EXPECT_EQ(d ? std::optional(d->id) : std::nullopt, c.want) << c.what;
    }
    EXPECT_FALSE(Displays::containing({0, 0, 10, 10}, {}));
    // The first display is only the starting point: it does not win with no overlap.
    EXPECT_EQ(Displays::containing({1500, 10, 10, 10}, both)->id, 2u);
}

// A window stranded off every display is placed from the closest one.
TEST(Displays, NearestIsTheDisplayItIsOnElseTheClosest) {
    const auto a = disp(1, "A", {0, 0, 1000, 800});
    const auto b = disp(2, "B", {1000, 0, 1000, 800});
    const std::vector<Display> both{a, b};
    struct Case {
        const char* what;
        Rect rect;
        std::optional<uint32_t> want;
    };
    const std::vector<Case> cases{
        {"on B", {1200, 100, 100, 100}, 2},
        {"right of B", {2500, 100, 100, 100}, 2},
        {"below A, by the corner", {-300, 900, 100, 100}, 1},
        {"above the seam, nearer B", {1100, -500, 100, 100}, 2},
        {"above the seam, straddling it: earliest", {950, -500, 100, 100}, 1},
        {"beyond B diagonally", {2100, 1000, 10, 10}, 2},
        {"not finite", {NAN, 0, 10, 10}, std::nullopt},
    };
    for (const auto& c : cases) {
        auto d = Displays::nearest(c.rect, both);
        EXPECT_EQ(d ? std::optional(d->id) : std::nullopt, c.want) << c.what;
    }
    EXPECT_FALSE(Displays::nearest({0, 0, 10, 10}, {}));
}

// The island and the settings window show the same text for a display's size;
// a size far beyond any integer type must still read, not overflow.
TEST(Displays, SizeTextIsWholePoints) {
    EXPECT_EQ(Displays::sizeText(disp(1, "A", {0, 0, 2560.9, 1440.2})), "2560 \u00d7 1440");
    EXPECT_EQ(Displays::sizeText(disp(1, "A", {0, 0, -0.5, 1e20})), "0 \u00d7 1e+20");
}

// What the user can still grab after a monitor went is left alone; what they
// cannot is put on the display it overlaps, as close to where it was as fits.
TEST(Displays, UnreachableWindowsAreRescuedOntoADisplay) {
    auto laptop = disp(1, "L", {0, 0, 1440, 900});
    laptop.visible = {0, 25, 1440, 875};
    const std::vector<Display> one{laptop};
    struct Case {
        const char* what;
        Rect window;
        std::optional<Rect> rescued; // nullopt: reachable
    };
    const std::vector<Case> cases{
        {"a sliver at the right edge", {1370, 150, 702, 400}, Rect{738, 150, 702, 400}},
        {"half on", {1000, 150, 800, 400}, std::nullopt},
        {"title bar under the menu bar", {100, 0, 400, 600}, Rect{100, 25, 400, 600}},
        {"a third of the title bar and more of the area on", {1100, 200, 900, 600}, std::nullopt},
        {"title bar above the top", {100, -300, 400, 320}, Rect{100, 25, 400, 320}},
        {"larger than the usable area", {1400, -50, 2000, 1200}, Rect{0, 25, 1440, 875}},
        {"off every display, below", {200, 2000, 300, 200}, Rect{200, 700, 300, 200}},
        {"fractional", {1430.4, 100.6, 300.5, 200.5}, Rect{1140, 101, 300, 200}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Displays::reachable(c.window, one), !c.rescued) << c.what;
        if (c.rescued) {
            EXPECT_EQ(Displays::rescued(c.window, one), c.rescued) << c.what;
        }
    }
    // Nowhere to go; and a window without area has nothing to grab.
    EXPECT_FALSE(Displays::rescued({0, 0, 10, 10}, {}));
    EXPECT_TRUE(Displays::reachable({5000, 0, 0, 0}, one));
}
