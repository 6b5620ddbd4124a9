#include "platform/quick/QuickView.h"
#include "platform/quick/SettingsBridge.h"
#include "prefs/Prefs.h"
#include "settings/SettingsWindow.h"

#include "tests/app/ShellWorld.h"
#include "tests/quick/Drawn.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QQuickItem>
#include <QSet>

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::quicktest::drawn;
using tarnwick::shelltest::ShellWorld;

namespace {

// The running settings window over the whole program on a simulated desktop.
struct Form : ShellWorld {
    std::unique_ptr<quick::SettingsBridge> bridge;
    std::unique_ptr<QQuickView> window;

    Form() {
        launch();
        app->settingsWindow().show();
        bridge = std::make_unique<quick::SettingsBridge>(app->settingsWindow().view(), false);
        window = quick::loadView("settings/SettingsView.qml", bridge.get());
        window->show();
    }
    SettingsView& model() { return *app->settingsWindow().view(); }
    QQuickItem* root() { return window->rootObject(); }
    // The scene as drawn now, its layouts settled: the form follows the
    // model on the event loop's next turn.
    QList<QQuickItem*> items() {
        QCoreApplication::processEvents();
        window->grabWindow();
        QList<QQuickItem*> out;
        drawn(root(), out);
        return out;
    }

    // Every text on screen, each as the Text item shows it.
    QSet<QString> texts() {
        QSet<QString> out;
        for (auto* item : items())
            if (item->inherits("QQuickText") && item->isVisible())
                out << item->property("text").toString();
        return out;
    }
    QQuickItem* control(const char* type, const QString& text) {
        for (auto* item : items())
            if (item->inherits(type) && item->isVisible() &&
                (text.isNull() || item->property("text").toString() == text))
                return item;
        ADD_FAILURE() << "no " << type << " " << text.toStdString();
        return nullptr;
    }
    bool enabled(const QString& button) {
        auto* b = control("QQuickAbstractButton", button);
        return b && b->isEnabled();
    }
    void key(QQuickItem* item, Qt::Key k) {
        item->forceActiveFocus(Qt::TabFocusReason);
        QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier);
        QKeyEvent release(QEvent::KeyRelease, k, Qt::NoModifier);
        QGuiApplication::sendEvent(window.get(), &press);
        QGuiApplication::sendEvent(window.get(), &release);
    }
    // What the form asks to show that the window does not.
    std::vector<std::string> missing() {
        const auto shown = texts();
        std::vector<std::string> out;
        auto need = [&](const std::string& s) {
            if (!s.empty() && !shown.contains(quick::qs(s))) out.push_back(s);
        };
        using K = FormItem::Kind;
        for (const auto& s : model().form()) {
            need(s.title);
            need(s.footer);
            for (const auto& i : s.items) {
                need(i.text);
                if (i.kind == K::popup) need(i.choices[i.chosen]);
                if (i.kind == K::segmented)
                    for (const auto& c : i.choices)
                        need(c);
                if (i.kind != K::toggle && i.kind != K::app) need(i.detail);
            }
        }
        return out;
    }
};

} // namespace

TEST(SettingsViewQml, ShowsTheWholeFormForOneDisplayAndForTwo) {
    Form f;
    ASSERT_TRUE(f.root());
    EXPECT_EQ(f.root()->width(), 560);
    EXPECT_EQ(f.root()->height(), 780);
    EXPECT_EQ(f.missing(), std::vector<std::string>{});
    EXPECT_TRUE(f.texts().contains("Connect a second display to move windows between screens."));
    EXPECT_FALSE(f.enabled("Save layout now"));
    EXPECT_FALSE(f.enabled("Restore layout"));

    f.plugStudio();
    EXPECT_EQ(f.missing(), std::vector<std::string>{});
    EXPECT_TRUE(f.texts().contains("2560 \u00d7 1440 \u00b7 external"));
    EXPECT_FALSE(f.texts().contains("Connect a second display to move windows between screens."));
    EXPECT_TRUE(f.enabled("Save layout now"));
    EXPECT_TRUE(f.enabled("Restore layout"));
    EXPECT_EQ(f.root()->height(), 780); // the form scrolls; the window keeps its size
}

TEST(SettingsViewQml, KeyboardControlsReachThePreferences) {
    Form f;
    auto& prefs = f.app->prefs();
    auto* chime = f.control("QQuickSwitch", "Play a chime when a display connects or disconnects");
    ASSERT_TRUE(chime);
    ASSERT_TRUE(prefs.playSounds());
    f.key(chime, Qt::Key_Space);
    EXPECT_FALSE(prefs.playSounds());
    EXPECT_FALSE(chime->property("checked").toBool());

    // A change made elsewhere (the menu) shows in the switch too.
    prefs.setPlaySounds(true);
    QCoreApplication::processEvents();
    EXPECT_TRUE(chime->property("checked").toBool());

    // The slider moves by whole steps and its text follows the preference.
    EXPECT_TRUE(f.texts().contains("2.0 s"));
    auto* slider = f.control("QQuickSlider", QString());
    ASSERT_TRUE(slider);
    f.key(slider, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(prefs.delay(), 2.5);
    EXPECT_TRUE(f.texts().contains("2.5 s"));
    for (int n = 0; n < 20; ++n)
        f.key(slider, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(prefs.delay(), 6.0);
    EXPECT_TRUE(f.texts().contains("6.0 s"));

    // A control below the fold scrolls into view when the keyboard reaches it.
    auto* scroll = f.root()->findChild<QQuickItem*>("settingsScroll");
    auto* login = f.control("QQuickSwitch", "Launch at login");
    ASSERT_TRUE(scroll && login);
    EXPECT_EQ(scroll->property("contentY").toDouble(), 0);
    login->forceActiveFocus(Qt::TabFocusReason);
    const double bottom = login->mapToItem(scroll, {0, login->height()}).y();
    EXPECT_GT(scroll->property("contentY").toDouble(), 0);
    EXPECT_LE(bottom, scroll->height());
}

TEST(SettingsViewQml, PickersAndAppSwitchesAnswerTheirOwnRow) {
    Form f;
    auto& prefs = f.app->prefs();
    // "Fill screen" is only on the placement picker; the action picker must not move.
    const auto before = prefs.onConnect();
    auto* fill = f.control("QQuickAbstractButton", "Fill screen");
    ASSERT_TRUE(fill);
    f.key(fill, Qt::Key_Space);
    EXPECT_EQ(prefs.placement(), Placement::fill);
    EXPECT_EQ(prefs.onConnect(), before);
    EXPECT_TRUE(f.texts().contains("Every window fills the new display."));

    // A stored target that is unplugged stays chosen through later refreshes.
    prefs.setTargetDisplay("Side Display");
    prefs.setPlaySounds(false);
    EXPECT_TRUE(f.texts().contains("Side Display"));
    EXPECT_FALSE(f.texts().contains("Largest external display"));

    // An excluded app that is not running: switching it on takes it out of the list.
    prefs.setExcluded({"com.gone.Thing", "com.gone.Thing"});
    auto* gone = f.control("QQuickSwitch", "com.gone.Thing");
    ASSERT_TRUE(gone);
    EXPECT_FALSE(gone->property("checked").toBool());
    f.key(gone, Qt::Key_Space);
    EXPECT_EQ(prefs.excluded(), std::vector<std::string>{});
    EXPECT_FALSE(f.texts().contains("com.gone.Thing"));
}

TEST(SettingsViewQml, ChangesInOneTurnRedrawTheFormOnce) {
    Form f;
    int redrawn = 0;
    QObject::connect(f.bridge.get(), &quick::SettingsBridge::changed, [&] { ++redrawn; });
    for (int i = 1; i <= 5; ++i)
        f.app->status().set("Moving " + std::to_string(i) + " of 5");
    f.app->prefs().setPlaySounds(false);
    EXPECT_EQ(redrawn, 0) << "redrawn within the turn";
    QCoreApplication::processEvents();
    EXPECT_EQ(redrawn, 1);
    EXPECT_TRUE(f.texts().contains("Moving 5 of 5"));
    QCoreApplication::processEvents();
    EXPECT_EQ(redrawn, 1) << "nothing more to draw";
}

// An application that comes into the list adds its own line: the other lines
// stay the same controls, so the one the keyboard is on keeps the focus.
TEST(SettingsViewQml, AnAppComingKeepsTheFocusedLine) {
    Form f;
    auto& prefs = f.app->prefs();
    prefs.setExcluded({"com.gone.Alpha"});
    QPointer<QQuickItem> alpha = f.control("QQuickSwitch", "com.gone.Alpha");
    ASSERT_TRUE(alpha);
    alpha->forceActiveFocus(Qt::TabFocusReason);
    ASSERT_TRUE(alpha->hasActiveFocus());

    prefs.setExcluded({"com.gone.Alpha", "com.gone.Beta"});
    ASSERT_TRUE(f.control("QQuickSwitch", "com.gone.Beta"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(alpha) << "the line was made again";
    EXPECT_TRUE(alpha->hasActiveFocus());

    prefs.setExcluded({"com.gone.Beta"});
    EXPECT_FALSE(f.texts().contains("com.gone.Alpha"));
    EXPECT_TRUE(f.control("QQuickSwitch", "com.gone.Beta"));
}
