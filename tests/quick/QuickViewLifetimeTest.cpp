#include "platform/quick/QuickSurfaces.h"

#include "tests/quick/Drawn.h"
#include "tests/setup/SetupWorld.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QQuickItem>
#include <QQuickView>

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::quicktest::drawn;
using tarnwick::setuptest::SetupWorld;

namespace {

// The first-run window drawn by the program's own surfaces, over the
// simulated desktop's.
struct DrawnSetup : SetupWorld {
    quick::QuickSurfaces surfaces{desk.surfaces(), {}};
    SetupWindow drawnWindow{surfaces,
                            {dispatch, platform.trust, platform.workspace, platform.processes},
                            setup,
                            [this] { transcript.line("settings", "shown"); }};

    QQuickView* view() { return qobject_cast<QQuickView*>(surfaces.window(WindowKind::setup)); }
    QQuickItem* find(const QString& name) {
        auto* v = view();
        if (!v || !v->rootObject()) return nullptr;
        v->grabWindow(); // lays the scene out
        QList<QQuickItem*> items;
        drawn(v->rootObject(), items);
        for (auto* item : items)
            if (item->objectName() == name) return item;
        return nullptr;
    }
    // Presses a button as the keyboard does: focused, then Space.
    void press(QQuickItem* button) {
        button->forceActiveFocus(Qt::TabFocusReason);
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ");
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, " ");
        QGuiApplication::sendEvent(button->window(), &down);
        QGuiApplication::sendEvent(button->window(), &up);
    }
};

} // namespace

// Both buttons of the last card close the window whose click handler is
// running; Qt aborts the process if the view goes before the handler ends.
TEST(QuickViewLifetime, ALastCardButtonClosesItsWindowAfterItsClick) {
    for (const char* button : {"cardButton0", "cardButton1"}) {
        DrawnSetup w;
        w.desk.setTrusted(true);
        w.drawnWindow.show(SetupModel::Step::done);
        QPointer<QQuickView> view = w.view();
        ASSERT_TRUE(view);
        QGuiApplication::processEvents();
        auto* item = w.find(button);
        ASSERT_TRUE(item) << button;

        w.press(item);
        EXPECT_FALSE(w.drawnWindow.visible()) << button;
        EXPECT_EQ(w.surfaces.window(WindowKind::setup), nullptr);
        ASSERT_TRUE(view) << "deleted under its own handler";
        EXPECT_FALSE(view->isVisible()) << "off the screen at once";
        EXPECT_EQ(w.transcript.text().find("settings shown") != std::string::npos,
                  std::string(button) == "cardButton1");
        QGuiApplication::processEvents();
        EXPECT_FALSE(view) << "deleted on the next turn";
    }
}
