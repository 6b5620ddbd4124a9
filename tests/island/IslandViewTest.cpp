#include "island/IslandView.h"
#include "platform/sim/SimScreens.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

const Display laptop{1, "Built-in", {0, 0, 1512, 982}, {0, 25, 1512, 957}, true};
const Display studio{2, "Studio Display", {1512, 0, 2560, 1440}, {1512, 0, 2560, 1440}, false};
const Display dell{3, "DELL U2720Q", {4072, 0, 1920, 1080}, {4072, 0, 1920, 1080}, false};

// The simulated desktop's metric: every code point is 0.6 of the point size wide.
double metric(const std::string& s, double size, FontWeight) {
    double n = 0;
    for (unsigned char c : s)
        n += (c & 0xC0) != 0x80;
    return n * size * 0.6;
}

struct Island {
    std::shared_ptr<IslandModel> m;
    BuiltinWords words;
    IslandView view() const { return IslandView(*m, metric, words); }
};

Island island(IslandModel::Phase phase, Size notch = {}, std::vector<Display> subjects = {studio},
              std::vector<Display> remaining = {},
              std::vector<Display> displays = {laptop, studio}) {
    auto m = std::make_shared<IslandModel>(IslandModel::Seed{.target = studio,
                                                             .subjects = std::move(subjects),
                                                             .remaining = std::move(remaining),
                                                             .phase = std::move(phase),
                                                             .notch = notch},
                                           std::move(displays));
    m->setExpanded(true);
    return {m, sim::SimScreens::words};
}

// A chooser offering `n` windows from the laptop screen.
Island chooser(size_t n, std::vector<Display> displays = {laptop, studio}) {
    auto i = island(IslandModel::Choosing{}, {}, {studio}, {}, std::move(displays));
    auto app = std::make_shared<RunningApp>(RunningApp{.pid = 9, .name = "Notes"});
    std::vector<AppWindow> windows;
    for (size_t k = 0; k < n; ++k)
        windows.push_back({app, nullptr, {10, 10, 300, 200}, "Note " + std::to_string(k + 1)});
    i.m->setWindows(std::move(windows));
    i.m->rebuild();
    return i;
}

} // namespace

TEST(IslandView, GrowsFromTheNotchOrFromASmallPill) {
    auto notched = island(IslandModel::Choosing{}, {200, 32});
    notched.m->setExpanded(false);
    auto f = notched.view().frame();
    EXPECT_EQ(f.outerWidth, 200 + 2 * 12);
    EXPECT_EQ(f.topSpace, 32);
    EXPECT_FALSE(f.minHeight);
    EXPECT_EQ(f.shape, IslandShape(NotchShape{12, 10}));
    EXPECT_EQ(f.shadowOpacity, 0);
    EXPECT_FALSE(notched.view().content());
    EXPECT_TRUE(notched.view().texts().empty());

    notched.m->setExpanded(true);
    f = notched.view().frame();
    EXPECT_EQ(f.outerWidth, 520 + 2 * 12);
    EXPECT_EQ(f.shape, IslandShape(NotchShape{12, 30}));

    auto free = island(IslandModel::Announce{true});
    free.m->setExpanded(false);
    f = free.view().frame();
    EXPECT_EQ(f.outerWidth, 126);
    EXPECT_EQ(f.minHeight, 34);
    EXPECT_EQ(f.shape, IslandShape(RoundedShape{17}));
    free.m->setExpanded(true);
    f = free.view().frame();
    EXPECT_EQ(f.outerWidth, 400);
    EXPECT_EQ(f.topSpace, 14);
    EXPECT_FALSE(f.minHeight);
    EXPECT_EQ(f.shape, IslandShape(RoundedShape{28}));
}

TEST(IslandView, AnnouncesWhatCameAndWhereTheWindowsWent) {
    using Texts = std::vector<std::string>;
    EXPECT_EQ(island(IslandModel::Announce{true}).view().texts(),
              (Texts{"Studio Display connected", "2560 \u00d7 1440"}));
    EXPECT_EQ(island(IslandModel::Announce{true}, {}, {studio, dell}).view().texts(),
              (Texts{"2 displays connected", "Studio Display \u00b7 DELL U2720Q"}));

    auto gone = [](std::vector<Display> remaining) {
        auto i = island(IslandModel::Announce{false}, {}, {studio}, std::move(remaining));
        i.words.yours = "your laptop";
        return i.view().announceDetail(false);
    };
    EXPECT_EQ(gone({laptop, dell}), "Windows moved to your other screens");
    EXPECT_EQ(gone({laptop}), "Windows are back on your laptop");
    EXPECT_EQ(gone({}), "");
}

TEST(IslandView, TheListScrollsFromTheSeventhRow) {
    auto list = [](size_t n) { return chooser(n).view().chooser().list; };
    EXPECT_EQ(list(6).height, 312);
    EXPECT_FALSE(list(6).scrolls);
    EXPECT_EQ(list(7).height, 312);
    EXPECT_TRUE(list(7).scrolls);
}

TEST(IslandView, TheChooserReadsTopToBottom) {
    auto i = island(IslandModel::Choosing{});
    auto named = std::make_shared<RunningApp>(RunningApp{.pid = 1, .name = "Mail"});
    auto bundled = std::make_shared<RunningApp>(RunningApp{.pid = 2, .identifier = "com.x"});
    auto bare = std::make_shared<RunningApp>(RunningApp{.pid = 3});
    i.m->setWindows({{named, nullptr, {10, 10, 300, 200}, "Inbox", true},
                     {bundled, nullptr, {20, 20, 300, 200}, ""},
                     {bare, nullptr, {30, 30, 300, 200}, "Notes"},
                     {bare, nullptr, {1600, 30, 300, 200}, "There already"}});
    i.m->rebuild();
    EXPECT_EQ(i.view().texts(),
              (std::vector<std::string>{"Studio Display connected",
                                        "Choose what moves \u00b7 1 already there", "Select none",
                                        "Move to", "MacBook screen", "Studio Display", "Mail",
                                        "Inbox", "Full screen", "com.x", "Untitled window", "Notes",
                                        "Not now", "Move selected (3)", "Move all"}));

    auto manual = island(IslandModel::Choosing{}, {}, {});
    EXPECT_EQ(manual.view().chooser().header.title, "Move windows");
    EXPECT_EQ(manual.view().chooser().header.subtitle, "Choose what moves");
}

TEST(IslandView, CutsInTheMiddleWithoutSplittingACharacter) {
    auto width = [](const std::string& s) { return metric(s, 10, FontWeight::regular); };
    EXPECT_EQ(IslandView::cutMiddle("Short", 60, width), "Short");
    // Six characters of six points each: the ellipsis and five more.
    EXPECT_EQ(IslandView::cutMiddle("\u00c9cran du Caf\u00e9", 36, width), "\u00c9cr\u2026f\u00e9");
    EXPECT_EQ(IslandView::cutMiddle("Monitor", 3, width), "\u2026");
}

TEST(NotchShape, TheBottomCornersShrinkToTheRoomLeftBelowTheEars) {
    auto path = NotchShape{12, 30}.path({0, 0, 224, 32});
    ASSERT_EQ(path.size(), 9u);
    // r = min(30, (32 - 12) / 2, (224 - 24) / 2) = 10
    EXPECT_EQ(path[1].to, (Point{12, 12}));
    EXPECT_EQ(path[1].control, (Point{12, 0}));
    EXPECT_EQ(path[2].to, (Point{12, 22}));
    EXPECT_EQ(path[3].to, (Point{22, 32}));
    EXPECT_EQ(path[4].to, (Point{202, 32}));
    EXPECT_EQ(path[7].to, (Point{224, 0}));
    EXPECT_EQ(path[8].kind, PathSegment::Kind::close);
}

TEST(NotchShape, NothingLiesOutsideATooSmallRectangle) {
    for (double w : {0.0, 10.0, 24.0, 30.0, 224.0})
        for (double h : {0.0, 5.0, 12.0, 20.0})
            for (double bottom : {-4.0, 0.0, 30.0}) {
                const Rect r{100, 50, w, h};
                for (const auto& seg : NotchShape{12, bottom}.path(r)) {
                    std::vector<Point> points;
                    if (seg.kind != PathSegment::Kind::close) points.push_back(seg.to);
                    if (seg.kind == PathSegment::Kind::quad) points.push_back(seg.control);
                    for (const Point& p : points)
                        EXPECT_TRUE(p.x >= r.minX() && p.x <= r.maxX() && p.y >= r.minY() &&
                                    p.y <= r.maxY())
                            << w << "x" << h << " bottom " << bottom << ": " << p.x << "," << p.y;
                }
            }
}
