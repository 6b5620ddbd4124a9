#include "island/IslandModel.h"

#include <gtest/gtest.h>

using namespace tarnwick;

namespace {

// A laptop panel, monitor A to its right and monitor B to A's right (top-left space).
const Display laptop{1, "Built-in", {0, 0, 1440, 900}, {0, 25, 1440, 875}, true};
const Display monitorA{2, "A", {1440, 0, 1920, 1080}, {1440, 0, 1920, 1080}, false};
const Display monitorB{3, "B", {3360, 0, 2560, 1440}, {3360, 0, 2560, 1440}, false};

AppWindow window(const std::string& title, const Rect& frame) {
    static auto app = std::make_shared<RunningApp>(RunningApp{.pid = 7, .name = "Mail"});
    return {app, nullptr, frame, title};
}

AppWindow on(const Display& d, const std::string& title) {
    return window(title, {d.frame.x + 10, d.frame.y + 10, 400, 300});
}

std::shared_ptr<IslandModel> chooser(const Display& target, std::vector<AppWindow> windows) {
    auto m = std::make_shared<IslandModel>(
        IslandModel::Seed{.target = target, .phase = IslandModel::Choosing{}},
        std::vector<Display>{laptop, monitorA, monitorB});
    m->setWindows(std::move(windows));
    m->rebuild();
    return m;
}

std::vector<std::string> shown(const IslandModel& m) {
    std::vector<std::string> out;
    for (const auto& i : m.items())
        out.push_back(i.id + " " + i.window.title + (i.selected ? " ticked" : ""));
    return out;
}

} // namespace

TEST(IslandModel, OffersWindowsAwayFromTheTargetWithTheBuiltinOnesTickedFirst) {
    auto m = chooser(monitorB, {on(monitorA, "a1"), on(laptop, "l1"), on(monitorB, "b1"),
                                on(monitorA, "a2"), on(laptop, "l2"), on(monitorB, "b2")});
    // Identifiers follow the listed order; ticked items move ahead without
    // losing their order among themselves.
    EXPECT_EQ(shown(*m),
              (std::vector<std::string>{"3-1 l1 ticked", "3-3 l2 ticked", "3-0 a1", "3-2 a2"}));
    EXPECT_EQ(m->alreadyThere(), 2);
    EXPECT_EQ(m->selectedCount(), 2);
}

TEST(IslandModel, EverythingIsTickedOnTheWayBackToTheBuiltinScreen) {
    auto m = chooser(laptop, {on(monitorB, "b1"), on(monitorA, "a1"), on(laptop, "l1")});
    EXPECT_EQ(shown(*m), (std::vector<std::string>{"1-0 b1 ticked", "1-1 a1 ticked"}));
    EXPECT_EQ(m->alreadyThere(), 1);
}

TEST(IslandModel, AWindowOffEveryScreenIsOnNoneOfThemAndTiesGoToTheFirstDisplay) {
    auto m = chooser(monitorA, {on(monitorB, "b1"), window("lost", {-5000, -5000, 300, 200}),
                                // Half on the laptop, half on A: the laptop comes first.
                                window("split", {1240, 100, 400, 300}),
                                // Beside A, off every screen: not already there.
                                window("beside", {1440, 1200, 400, 300})});
    EXPECT_EQ(shown(*m), (std::vector<std::string>{"2-1 lost ticked", "2-2 split ticked",
                                                   "2-3 beside ticked", "2-0 b1"}));
    EXPECT_EQ(m->alreadyThere(), 0);

    auto empty = chooser(monitorA, {});
    EXPECT_TRUE(empty->items().empty());
    EXPECT_EQ(empty->alreadyThere(), 0);
}

TEST(IslandModel, ANewDestinationRenamesTheItemsAndForgetsTheUsersTicks) {
    auto m = chooser(monitorB, {on(laptop, "l1"), on(monitorA, "a1")});
    m->toggle("3-0");
    m->toggle("3-1");
    EXPECT_EQ(shown(*m), (std::vector<std::string>{"3-0 l1", "3-1 a1 ticked"}));

    m->setTarget(monitorA);
    m->rebuild();
    EXPECT_EQ(shown(*m), (std::vector<std::string>{"2-0 l1 ticked"}));
    EXPECT_EQ(m->alreadyThere(), 1);
    // A tap meant for the old list finds nothing.
    EXPECT_FALSE(m->toggle("3-0"));
}

TEST(IslandModel, NamesItsSubjects) {
    auto named = [](std::vector<Display> subjects) {
        return IslandModel({.target = monitorA, .subjects = std::move(subjects)}, {}).subjectName();
    };
    EXPECT_EQ(named({monitorA}), "A");
    EXPECT_EQ(named({monitorA, monitorB, laptop}), "3 displays");
    EXPECT_EQ(named({}), "0 displays");
}

TEST(IslandModel, ObserversSeeTheChangeAndTheAnimationItWasMadeWith) {
    auto m = chooser(monitorB, {on(laptop, "l1"), on(monitorA, "a1")});
    std::vector<std::string> seen;
    auto sub = m->observe([&] {
        seen.push_back(std::to_string(m->selectedCount()) + " " +
                       (m->animation().curve == Animation::Curve::easeOut ? "eased" : "plain"));
    });
    m->animated(Animation::easeOut(0.15), [&] { m->selectAll(true); });
    m->toggle("3-0");
    EXPECT_EQ(seen, (std::vector<std::string>{"2 eased", "1 plain"}));

    // Transactions nest, and the outer one holds again once the inner one ends.
    m->animated(Animation::spring(0.42, 0.82), [&] {
        m->animated(Animation::easeOut(0.25), [&] { m->setExpanded(true); });
        m->setPhase(IslandModel::Loading{});
    });
    EXPECT_EQ(m->animation(), Animation::spring(0.42, 0.82));
}
