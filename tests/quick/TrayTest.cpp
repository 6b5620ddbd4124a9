#include "platform/quick/Tray.h"

#include "tests/app/ShellWorld.h"

#include <QCoreApplication>
#include <QPointer>
#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::shelltest::ShellWorld;

namespace {

// The menu as it drops down: "-" for a separator, "[TEXT]" for a disabled
// line, "TEXT >" for a submenu, with its cases indented ("*" when checked).
std::vector<std::string> shown(const QMenu& menu) {
    std::vector<std::string> out;
    for (auto* a : menu.actions()) {
        if (!a->isVisible()) continue;
        if (a->isSeparator()) {
            out.push_back("-");
        } else if (a->menu()) {
            out.push_back(a->text().toStdString() + " >");
            for (auto* c : a->menu()->actions())
                out.push_back(std::string(c->isChecked() ? "  * " : "    ") +
                              c->text().toStdString());
        } else {
            out.push_back(a->isEnabled() ? a->text().toStdString()
                                         : "[" + a->text().toStdString() + "]");
        }
    }
    return out;
}

QAction* find(const QMenu& menu, const QString& text) {
    for (auto* a : menu.actions()) {
        if (a->text() == text) return a;
        if (a->menu())
            if (auto* c = find(*a->menu(), text)) return c;
    }
    return nullptr;
}

// Menu actions reach the model on the next turn of the event loop.
void settle() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

} // namespace

TEST(Tray, MenuMirrorsTheModelAndFollowsIt) {
    ShellWorld w;
    w.launch();
    quick::Tray tray(w.app->makeMenu());
    const std::vector<std::string> single{"Open Tarnwick\u2026",
                                          "-",
                                          "[Ready]",
                                          "[1 display connected]",
                                          "-",
                                          "Move everything to Built-in Display",
                                          "-",
                                          "When a display connects >",
                                          "  * Let me choose",
                                          "    Move everything",
                                          "    Do nothing",
                                          "-",
                                          "Quit Tarnwick"};
    EXPECT_EQ(shown(tray.menu()), single);
    EXPECT_EQ(tray.icon().toolTip(), "Ready");

    // A new display rebuilds the menu and the tooltip without being asked.
    w.plugStudio();
    const auto two = shown(tray.menu());
    EXPECT_NE(std::find(two.begin(), two.end(), "[2 displays connected]"), two.end());
    EXPECT_NE(std::find(two.begin(), two.end(), "Move everything to Studio Display"), two.end());
    EXPECT_EQ(tray.icon().toolTip().toStdString(), "Studio Display connected");
}

TEST(Tray, ChoosingACaseStoresItAndMovesTheCheck) {
    ShellWorld w;
    w.launch();
    quick::Tray tray(w.app->makeMenu());
    auto* doNothing = find(tray.menu(), "Do nothing");
    ASSERT_NE(doNothing, nullptr);
    doNothing->trigger();
    settle();
    EXPECT_EQ(w.app->prefs().onConnect(), OnConnect::nothing);
    // The menu was rebuilt: look the actions up again.
    EXPECT_TRUE(find(tray.menu(), "Do nothing")->isChecked());
    EXPECT_FALSE(find(tray.menu(), "Let me choose")->isChecked());
}

TEST(Tray, ButtonsRunTheirCommands) {
    ShellWorld w;
    w.launch();
    quick::Tray tray(w.app->makeMenu());
    find(tray.menu(), "Open Tarnwick\u2026")->trigger();
    settle();
    EXPECT_TRUE(w.said("window settings shown"));
    // Disabled lines do nothing, and the picture of the menu has its rows.
    find(tray.menu(), "Ready")->trigger();
    settle();
    const QImage picture = quick::shootMenu(tray.model());
    EXPECT_GT(picture.height(), 5 * 20);
}

TEST(Tray, AChosenButtonRunsEvenWhenTheMenuChangesBeforeItsTurn) {
    ShellWorld w;
    w.launch();
    w.plugStudio();
    quick::Tray tray(w.app->makeMenu());
    find(tray.menu(), "Save current layout")->trigger();
    // Before the loop's next turn a third display shifts every entry below
    // the move buttons down by one.
    w.desk.addScreen({3, "Side Display", {4072, 0, 1280, 800}, {4072, 0, 1280, 775}});
    w.desk.post(PlatformEvent::displaysChanged);
    w.wait(1);
    ASSERT_EQ(w.app->controller().displays().size(), 3u);
    settle();
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), "Layout saved for 3 displays");

    // An entry that is gone, or hidden, by its turn does nothing.
    find(tray.menu(), "Move everything to Side Display")->trigger();
    find(tray.menu(), "Choose windows to move\u2026")->trigger();
    w.desk.unplug(3);
    w.desk.unplug(2);
    w.desk.post(PlatformEvent::displaysChanged);
    w.wait(1);
    const auto before = w.app->status().text();
    settle();
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), before);
}

TEST(Tray, AnOpenMenuKeepsItsActionsThroughChanges) {
    ShellWorld w;
    w.launch();
    quick::Tray tray(w.app->makeMenu());
    tray.menu().popup(QPoint(0, 0));
    QPointer<QAction> status = find(tray.menu(), "Ready");
    QPointer<QAction> quit = find(tray.menu(), "Quit Tarnwick");
    QPointer<QAction> doNothing = find(tray.menu(), "Do nothing");
    ASSERT_TRUE(status && quit && doNothing);

    // A new status rewrites its line in place.
    w.app->status().set("Moving 1 of 3");
    EXPECT_TRUE(status && quit && doNothing);
    EXPECT_EQ(status->text(), "Moving 1 of 3");
    EXPECT_TRUE(tray.menu().isVisible());

    // A display added adds its own rows and leaves the others be.
    w.plugStudio();
    EXPECT_TRUE(status && quit && doNothing);
    EXPECT_EQ(status->text(), "Studio Display connected");
    doNothing->trigger();
    settle();
    EXPECT_EQ(w.app->prefs().onConnect(), OnConnect::nothing);
    EXPECT_TRUE(doNothing && doNothing->isChecked());
    const auto two = shown(tray.menu());
    EXPECT_EQ(std::count(two.begin(), two.end(), "Move everything to Studio Display"), 1);
    EXPECT_NE(std::find(two.begin(), two.end(), "Choose windows to move\u2026"), two.end());
    tray.menu().hide();
}

// The menu follows every change of the displays, the status or the
// preferences: what it no longer shows must go, or each monitor plugged in
// and out leaves a submenu behind for the life of the program.
TEST(Tray, RebuildsLeaveNothingBehind) {
    ShellWorld w;
    w.launch();
    quick::Tray tray(w.app->makeMenu());
    w.plugStudio();
    w.unplugStudio();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto before =
        tray.findChildren<QObject*>().size() + tray.menu().findChildren<QObject*>().size();
    for (int i = 0; i < 10; ++i) {
        w.plugStudio();
        w.unplugStudio();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(tray.findChildren<QObject*>().size() + tray.menu().findChildren<QObject*>().size(),
              before);
    EXPECT_EQ(tray.menu().findChildren<QMenu*>().size(), 1u);
}
