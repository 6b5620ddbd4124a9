#include "app/MenuModel.h"

#include "tests/app/ShellWorld.h"

#include <gtest/gtest.h>

#include <set>

using namespace tarnwick;
using tarnwick::shelltest::ShellWorld;
using Lines = std::vector<std::string>;

namespace {

// The menu as the user sees it.
Lines shown(const MenuModel& menu) {
    Lines out;
    for (const auto& e : menu.entries()) {
        if (!e.visible) continue;
        switch (e.kind) {
        case MenuEntry::Kind::button:
            out.push_back(e.text);
            break;
        case MenuEntry::Kind::text:
            out.push_back("[" + e.text + "]");
            break;
        case MenuEntry::Kind::separator:
            out.push_back("-");
            break;
        case MenuEntry::Kind::picker:
            out.push_back(e.text + ": " + e.choices.at(e.chosen));
            break;
        }
    }
    return out;
}

size_t indexOf(const MenuModel& menu, const std::string& text) {
    const auto& entries = menu.entries();
    for (size_t i = 0; i < entries.size(); ++i)
        if (entries[i].text == text) return i;
    ADD_FAILURE() << "no entry " << text;
    return entries.size();
}

} // namespace

TEST(Menu, GrowsAndShrinksWithTheDisplays) {
    ShellWorld w;
    w.launch();
    auto menu = w.app->makeMenu();
    const Lines single{"Open Tarnwick\u2026",
                       "-",
                       "[Ready]",
                       "[1 display connected]",
                       "-",
                       "Move everything to Built-in Display",
                       "-",
                       "When a display connects: Let me choose",
                       "-",
                       "Quit Tarnwick"};
    EXPECT_EQ(shown(*menu), single);

    int told = 0;
    auto sub = menu->observe([&] { ++told; });
    w.plugStudio();
    EXPECT_GT(told, 0);
    EXPECT_EQ(
        shown(*menu),
        (Lines{"Open Tarnwick\u2026", "-", "[Studio Display connected]", "[2 displays connected]",
               "-", "Move everything to Built-in Display", "Move everything to Studio Display",
               "Choose windows to move\u2026", "-", "Restore saved layout", "Save current layout",
               "-", "When a display connects: Let me choose", "-", "Quit Tarnwick"}));

    w.unplugStudio();
    auto back = single;
    back[2] = "[Studio Display disconnected]";
    EXPECT_EQ(shown(*menu), back);
    EXPECT_EQ(MenuModel::displayCount(3), "3 displays connected");
    EXPECT_EQ(MenuModel::displayCount(0), "0 displays connected");
}

TEST(Menu, PickerStoresTheChosenCase) {
    ShellWorld w;
    w.launch();
    auto menu = w.app->makeMenu();
    const auto picker = indexOf(*menu, "When a display connects");
    menu->choose(picker, 2);
    EXPECT_EQ(w.desk.userDefaults().at("onConnect"), "nothing");
    EXPECT_EQ(menu->entries()[picker].chosen, 2u);
    menu->choose(picker, 0);
    EXPECT_EQ(w.desk.userDefaults().at("onConnect"), "ask");
    menu->choose(picker, 3); // no such case
    EXPECT_EQ(w.desk.userDefaults().at("onConnect"), "ask");
}

TEST(Menu, OnlyShownButtonsAct) {
    ShellWorld w;
    w.launch();
    auto menu = w.app->makeMenu();
    menu->activate(indexOf(*menu, "Save current layout")); // hidden with one display
    menu->activate(indexOf(*menu, "Ready"));
    menu->activate(menu->entries().size());
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), "Ready");

    w.plugStudio();
    menu->activate(indexOf(*menu, "Save current layout"));
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), "Layout saved for 2 displays");
}

TEST(Menu, MoveButtonsSendWindowsToTheirOwnDisplay) {
    ShellWorld w;
    w.desk.addApp({10, "Safari", "com.apple.Safari"});
    w.desk.addWindow({.pid = 10, .title = "Docs", .frame = {100, 100, 800, 600}}, false, false);
    w.launch();
    w.plugStudio();
    auto menu = w.app->makeMenu();
    menu->activate(indexOf(*menu, "Move everything to Studio Display"));
    w.wait(2);
    EXPECT_GE(w.desk.findWindow(10, "Docs")->frame.x, 1512);
}

TEST(Menu, EntriesKeepTheirIdentityWhileTheMenuChangesAroundThem) {
    ShellWorld w;
    w.launch();
    w.plugStudio();
    auto menu = w.app->makeMenu();
    auto ids = [&] {
        std::vector<std::string> out;
        for (const auto& e : menu->entries())
            out.push_back(e.id);
        return out;
    };
    const auto two = ids();
    EXPECT_EQ(std::set<std::string>(two.begin(), two.end()).size(), two.size()) << "unique";
    const auto save = menu->entries()[indexOf(*menu, "Save current layout")].id;
    const auto studio = menu->entries()[indexOf(*menu, "Move everything to Studio Display")].id;

    w.app->status().set("Something else");
    EXPECT_EQ(ids(), two);
    w.desk.addScreen({3, "Side Display", {4072, 0, 1280, 800}, {4072, 0, 1280, 775}});
    w.desk.post(PlatformEvent::displaysChanged);
    w.wait(1);
    EXPECT_EQ(menu->entries()[indexOf(*menu, "Save current layout")].id, save);
    EXPECT_EQ(menu->entries()[indexOf(*menu, "Move everything to Studio Display")].id, studio);

    // By identity: the entry as it is now, and nothing once it is gone.
    menu->activate(save);
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), "Layout saved for 3 displays");
    w.unplugStudio();
    const auto gone = w.app->status().text();
    menu->activate(studio);
    menu->activate("no such entry");
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), gone);
}

TEST(Menu, ADroppedMenuIsToldNothingMore) {
    ShellWorld w;
    w.launch();
    int told = 0;
    {
        auto menu = w.app->makeMenu();
        auto sub = menu->observe([&] { ++told; });
        w.app->status().set("one");
    }
    w.app->status().set("two");
    w.app->prefs().setOnConnect(OnConnect::nothing);
    w.plugStudio();
    EXPECT_EQ(told, 1);
}

TEST(Menu, QuitEndsTheProgram) {
    ShellWorld w;
    w.launch();
    auto menu = w.app->makeMenu();
    menu->activate(indexOf(*menu, "Quit Tarnwick"));
    EXPECT_TRUE(w.said(" quit\n"));
}
