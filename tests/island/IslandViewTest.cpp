#include "island/IslandView.h"

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
    return {m, {}};
}

// A chooser offering `n` windows from the laptop screen.
Island chooser(size_t n, std::vector<Display> displays = {laptop, studio}) {
    auto i = island(IslandModel::Choosing{}, {}, {studio}, {}, std::move(displays));
    auto app = std::make_shared<RunningApp>(RunningApp{.pid = 9, .localizedName = "Notes"});
    std::vector<AXWindow> windows;
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

TEST(IslandView, TheListShowsSixRowsAndScrollsBeyondThem) {
    auto list = [](size_t n) { return chooser(n).view().chooser().list; };
    EXPECT_EQ(list(3).height, 156);
    EXPECT_FALSE(list(3).scrolls);
    EXPECT_EQ(list(6).height, 312);
    EXPECT_FALSE(list(6).scrolls);
    EXPECT_EQ(list(9).height, 312);
    EXPECT_TRUE(list(9).scrolls);
    EXPECT_EQ(list(9).rows.size(), 9u);
}

TEST(IslandView, NothingToMoveDimsBothMoveButtonsAndHidesTheSelectButton) {
    auto i = chooser(0);
    i.m->setTarget(laptop);
    i.m->rebuild();
    auto c = i.view().chooser();
    EXPECT_EQ(c.list.emptyText, "Everything is already on the MacBook screen");
    EXPECT_EQ(c.list.height, 52);
    EXPECT_EQ(c.header.selectOpacity, 0);
    EXPECT_EQ(c.moveSelected.text, "Move selected (0)");
    EXPECT_FALSE(c.moveSelected.enabled);
    EXPECT_EQ(c.moveSelected.opacity, 0.4);
    EXPECT_FALSE(c.moveAll.enabled);
    EXPECT_EQ(c.moveAll.opacity, 0.4);
    EXPECT_TRUE(c.notNow.enabled);
    for (const auto& t : i.view().texts())
        EXPECT_NE(t, c.header.selectLabel);
}

TEST(IslandView, TicksDriveTheSelectButtonAndTheMoveSelectedButton) {
    auto i = chooser(2);
    auto c = i.view().chooser();
    EXPECT_EQ(c.header.selectLabel, "Select none");
    EXPECT_EQ(c.moveSelected.text, "Move selected (2)");

    IslandView::tap(*i.m, "2-0");
    IslandView::tap(*i.m, "2-1");
    c = i.view().chooser();
    EXPECT_EQ(c.moveSelected.text, "Move selected (0)");
    EXPECT_FALSE(c.moveSelected.enabled);
    EXPECT_EQ(c.moveSelected.opacity, 0.4);
    EXPECT_TRUE(c.moveAll.enabled);
    EXPECT_EQ(c.header.selectLabel, "Select all");
    EXPECT_EQ(i.m->animation(), Animation::easeOut(0.15));

    IslandView::selectAllOrNone(*i.m);
    EXPECT_EQ(i.m->selectedCount(), 2);
    EXPECT_EQ(i.view().chooser().header.selectLabel, "Select none");
    IslandView::selectAllOrNone(*i.m);
    EXPECT_EQ(i.m->selectedCount(), 0);
}

TEST(IslandView, TheChooserReadsTopToBottom) {
    auto i = island(IslandModel::Choosing{});
    auto named = std::make_shared<RunningApp>(RunningApp{.pid = 1, .localizedName = "Mail"});
    auto bundled = std::make_shared<RunningApp>(RunningApp{.pid = 2, .bundleIdentifier = "com.x"});
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

TEST(IslandView, LongDisplayNamesFallBackToCompactPillsAndThenToTheMenu) {
    auto with = [](const std::string& a, const std::string& b) {
        auto i = chooser(1, {laptop, {2, a, {1512, 0, 2560, 1440}}, {3, b, {4072, 0, 1920, 1080}}});
        i.m->setTarget(i.m->displays()[1]);
        return i.view().destination();
    };
    // "Move to" takes 46.2 of the 484 points, the gap 6 and three pills 42
    // each and 12 between them, leaving 293.8 for the labels at 6.6 a character.
    auto fits = with("Studio Display", "LG UltraFine 5K");
    EXPECT_EQ(fits.control, IslandView::Control::pills);
    EXPECT_EQ(fits.pills[0].label, "MacBook screen");
    EXPECT_TRUE(fits.pills[1].selected);

    auto compact = with("Studio Display Pro XDR", "LG UltraFine 5K");
    EXPECT_EQ(compact.control, IslandView::Control::compactPills);
    EXPECT_EQ(compact.pills[0].label, "MacBook");
    EXPECT_EQ(compact.pills[0].symbol, "laptopcomputer");
    // 19 characters fit in 130 points, the ellipsis among them.
    EXPECT_EQ(compact.pills[1].label, "Studio Di\u2026y Pro XDR");
    EXPECT_EQ(compact.pills[2].label, "LG UltraFine 5K");

    auto menu = with("Conference Room Projector Left", "Conference Room Projector Right");
    EXPECT_EQ(menu.control, IslandView::Control::menu);
    EXPECT_TRUE(menu.pills.empty());
    EXPECT_EQ(menu.menuLabel, "Conference Room Projector Left");
    ASSERT_EQ(menu.entries.size(), 3u);
    EXPECT_EQ(menu.entries[0].label, "MacBook screen");
    EXPECT_EQ(menu.entries[0].symbol, "laptopcomputer");
    EXPECT_EQ(menu.entries[1].symbol, "checkmark");
}

TEST(IslandView, CutsInTheMiddleWithoutSplittingACharacter) {
    auto width = [](const std::string& s) { return metric(s, 10, FontWeight::regular); };
    EXPECT_EQ(IslandView::cutMiddle("Short", 60, width), "Short");
    // Six characters of six points each: the ellipsis and five more.
    EXPECT_EQ(IslandView::cutMiddle("\u00c9cran du Caf\u00e9", 36, width), "\u00c9cr\u2026f\u00e9");
    EXPECT_EQ(IslandView::cutMiddle("Monitor", 3, width), "\u2026");
}

TEST(IslandView, ShowsProgressAndTheResult) {
    auto moving = island(IslandModel::Moving{"Moving 1 of 4 \u00b7 Mail", 0.125});
    EXPECT_EQ(moving.view().frame().width, 520);
    auto c = std::get<IslandView::Moving>(*moving.view().content());
    EXPECT_EQ(c.fraction, 0.125);

    auto failed = island(IslandModel::Done{"Moved 1 window to Studio Display", false});
    EXPECT_EQ(std::get<IslandView::Done>(*failed.view().content()).symbol,
              "exclamationmark.triangle.fill");
    EXPECT_EQ(island(IslandModel::Loading{}).view().texts(),
              (std::vector<std::string>{"Finding windows\u2026"}));
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
