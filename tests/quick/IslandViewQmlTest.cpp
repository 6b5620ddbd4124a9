#include "platform/quick/IslandBridge.h"
#include "platform/quick/QuickView.h"
#include "platform/sim/SimScreens.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QQuickItem>
#include <QStringList>

#include <gtest/gtest.h>
#include <set>

using namespace tarnwick;
using namespace tarnwick::quick;

namespace {

const Display laptop{1, "Built-in", {0, 0, 1512, 982}, {0, 25, 1512, 957}, true};
const Display studio{2, "Studio Display", {1512, 0, 2560, 1440}, {1512, 0, 2560, 1440}, false};

// The simulated desktop's metric: every code point is 0.6 of the point size wide.
double metric(const std::string& s, double size, FontWeight) {
    double n = 0;
    for (unsigned char c : s)
        n += (c & 0xC0) != 0x80;
    return n * size * 0.6;
}

std::shared_ptr<IslandModel> model(IslandModel::Phase phase, Size notch = {},
                                   std::vector<Display> displays = {laptop, studio}) {
    const Display target = displays.back();
    return std::make_shared<IslandModel>(
        IslandModel::Seed{
            .target = target, .subjects = {target}, .phase = std::move(phase), .notch = notch},
        std::move(displays));
}

// A chooser offering `n` windows from the laptop screen; the first is full
// screen and one more already lies on the destination.
std::shared_ptr<IslandModel> chooser(size_t n, Size notch = {200, 32},
                                     std::vector<Display> displays = {laptop, studio}) {
    auto m = model(IslandModel::Choosing{}, notch, std::move(displays));
    auto app = std::make_shared<RunningApp>(RunningApp{.pid = 9, .name = "Notes"});
    std::vector<AppWindow> windows;
    for (size_t k = 0; k < n; ++k)
        windows.push_back(
            {app, nullptr, {10, 10, 300, 200}, "Note " + std::to_string(k + 1), k == 0});
    windows.push_back({app, nullptr, {1600, 10, 300, 200}, "Already there"});
    m->setWindows(std::move(windows));
    m->rebuild();
    m->setExpanded(true);
    return m;
}

// The island drawn by the real view, with what it asked of the presenter.
struct Shown {
    std::shared_ptr<IslandModel> m;
    std::vector<std::string> asked;
    std::unique_ptr<IslandBridge> bridge;
    std::unique_ptr<QQuickView> view;

    explicit Shown(std::shared_ptr<IslandModel> model, bool withActions = true,
                   bool animate = false)
        : m(std::move(model)) {
        IslandActions actions;
        if (withActions) {
            actions.move = [this](const std::shared_ptr<IslandModel>&, Selection s) {
                asked.push_back(s == Selection::all ? "move all" : "move selected");
            };
            actions.retarget = [this](const std::shared_ptr<IslandModel>&, const Display& d) {
                asked.push_back("retarget " + d.name);
            };
            actions.close = [this](Closing) { asked.push_back("close"); };
        }
        bridge =
            std::make_unique<IslandBridge>(m, metric, sim::SimScreens::words, actions, animate);
        view = loadView("island/IslandView.qml", bridge.get());
        render();
    }
    // Lays out and draws a frame, so that layouts have settled.
    void render() { grab(*view); }
    IslandView decided() const { return IslandView(*m, metric, sim::SimScreens::words); }

    // By the visual tree: a repeater's items have no object parent to find them by.
    QQuickItem* item(const char* name) const {
        std::function<QQuickItem*(QQuickItem*)> find = [&](QQuickItem* i) -> QQuickItem* {
            if (i->objectName() == name) return i;
            for (auto* c : i->childItems())
                if (auto* found = find(c)) return found;
            return nullptr;
        };
        return view->rootObject() ? find(view->rootObject()) : nullptr;
    }
    QSizeF size(const char* name) const {
        auto* i = item(name);
        return i ? QSizeF(i->width(), i->height()) : QSizeF();
    }
    bool visible(const char* name) const {
        auto* i = item(name);
        return i && i->isVisible() && opacity(i) > 0;
    }
    static double opacity(const QQuickItem* i) {
        double o = 1;
        for (; i; i = i->parentItem())
            o *= i->opacity();
        return o;
    }
    // Every text a user can see now, in the order the items stand.
    std::vector<std::string> texts() const {
        std::vector<std::string> out;
        std::function<void(QQuickItem*)> walk = [&](QQuickItem* i) {
            // An application's icon may be drawn as its initial; that is a picture.
            if (!i->isVisible() || i->opacity() == 0 || i->objectName() == "appIcon") return;
            if (i->inherits("QQuickText")) {
                const auto t = i->property("text").toString();
                if (!t.isEmpty()) out.push_back(t.toStdString());
            }
            for (auto* c : i->childItems())
                walk(c);
        };
        if (view->rootObject()) walk(view->rootObject());
        return out;
    }
};

} // namespace

TEST(IslandViewQml, TheCardIsAsWideAsTheModelDecides) {
    Shown notched(model(IslandModel::Announce{true}, {200, 32}));
    EXPECT_EQ(notched.size("island"), QSizeF(224, 32));
    EXPECT_FALSE(notched.visible("content"));

    Shown free(model(IslandModel::Announce{true}));
    EXPECT_EQ(free.size("island"), QSizeF(126, 34));

    free.m->setExpanded(true);
    free.render();
    EXPECT_EQ(free.size("island").width(), 400);
    // Below the 14-point margin: the link, the title and the detail.
    EXPECT_GT(free.size("island").height(), 14 + 30 + 12);
    EXPECT_EQ(free.texts(), (std::vector<std::string>{"Studio Display connected", "2560 × 1440"}));

    Shown chosen(chooser(3));
    EXPECT_EQ(chosen.size("island").width(), chosen.decided().frame().outerWidth);
    EXPECT_EQ(chosen.size("island").width(), 544);
}

TEST(IslandViewQml, TheChooserShowsWhatTheModelSaysInItsOrder) {
    Shown shown(chooser(3));
    std::vector<std::string> expected;
    for (const auto& t : shown.decided().texts())
        expected.push_back(t);
    EXPECT_EQ(shown.texts(), expected);

    // Tucked in again, nothing but the black shape is left.
    shown.m->setExpanded(false);
    shown.render();
    EXPECT_TRUE(shown.texts().empty());
    EXPECT_EQ(shown.size("island"), QSizeF(224, 32));
}

TEST(IslandViewQml, SixRowsShowAndTheRestScroll) {
    Shown three(chooser(3));
    EXPECT_EQ(three.size("chooserList").height(), 3 * 52);
    EXPECT_FALSE(three.visible("scrollIndicator"));

    Shown nine(chooser(9));
    EXPECT_EQ(nine.size("chooserList").height(), 6 * 52);
    EXPECT_TRUE(nine.visible("scrollIndicator"));
    EXPECT_TRUE(nine.item("row-2-8")) << "every row is there to scroll to";
    // The card holds the whole list: it is taller than six rows and the header.
    EXPECT_GT(nine.size("island").height(), 32 + 6 * 52 + 38);
}

TEST(IslandViewQml, LongNamesFallBackToTheMenu) {
    const Display left{2, "Conference Room Projector Left", {1512, 0, 2560, 1440}, {}, false};
    const Display right{3, "Conference Room Projector Right", {-1920, 0, 1920, 1080}, {}, false};
    Shown shown(chooser(2, {200, 32}, {laptop, left, right}));
    ASSERT_EQ(shown.decided().destination().control, IslandView::Control::menu);
    EXPECT_TRUE(shown.visible("destinationMenu"));
    EXPECT_FALSE(shown.visible("pills"));
    const auto texts = shown.texts();
    EXPECT_NE(std::find(texts.begin(), texts.end(), "Conference Room Projector Right"),
              texts.end());
    // The menu fits in the card.
    EXPECT_LE(shown.size("destinationMenu").width(), 520 - 36);

    Shown pills(chooser(2));
    EXPECT_TRUE(pills.visible("pills"));
    EXPECT_FALSE(pills.visible("destinationMenu"));
}

TEST(IslandViewQml, ButtonsFollowTheTicks) {
    Shown shown(chooser(3));
    auto enabled = [&](const char* name) { return shown.item(name)->isEnabled(); };
    EXPECT_TRUE(enabled("moveSelected"));
    EXPECT_TRUE(enabled("moveAll"));

    // Everything unticked: nothing to move selectively, but "Move all" still works.
    shown.bridge->selectAll();
    shown.render();
    EXPECT_FALSE(enabled("moveSelected"));
    EXPECT_DOUBLE_EQ(shown.item("moveSelected")->opacity(), 0.4);
    EXPECT_TRUE(enabled("moveAll"));
    EXPECT_EQ(shown.item("selectAll")->property("text").toString(), "Select all");

    // Nothing offered: the line replaces the list, the select button is gone.
    Shown empty(chooser(0));
    EXPECT_TRUE(empty.visible("emptyLine"));
    EXPECT_FALSE(empty.visible("chooserList"));
    EXPECT_FALSE(empty.visible("selectAll"));
    EXPECT_FALSE(empty.item("moveAll")->isEnabled());
    EXPECT_FALSE(empty.item("moveSelected")->isEnabled());
}

TEST(IslandViewQml, TapsReachTheModelAndThePresenter) {
    Shown shown(chooser(3));
    const std::string id = shown.m->items().front().id;
    const auto name = "row-" + id;
    auto* row = shown.item(name.c_str());
    ASSERT_TRUE(row);
    ASSERT_TRUE(row->property("selected").toBool());

    shown.bridge->tap(QString::fromStdString(id));
    shown.render();
    EXPECT_FALSE(shown.m->items().front().selected);
    // The same row, updated in place.
    EXPECT_EQ(shown.item(name.c_str()), row);
    EXPECT_FALSE(row->property("selected").toBool());
    EXPECT_EQ(row->property("mark").toString(), "circle");
    EXPECT_EQ(shown.m->animation(), Animation::easeOut(0.15));

    shown.bridge->move(false);
    shown.bridge->retarget(1);
    shown.bridge->retarget(77); // a display that went away meanwhile
    shown.bridge->notNow();
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(shown.view.get(), &escape);
    EXPECT_EQ(shown.asked,
              (std::vector<std::string>{"move selected", "retarget Built-in", "close", "close"}));

    // Without a presenter the buttons do nothing rather than fail.
    Shown alone(chooser(3), false);
    alone.bridge->move(true);
    alone.bridge->notNow();
    alone.bridge->retarget(1);
    EXPECT_TRUE(alone.asked.empty());
}

TEST(IslandViewQml, AnimatedChangesSettleWhereTheModelSays) {
    auto m = chooser(3);
    m->setExpanded(false);
    Shown shown(m, true, true);
    EXPECT_EQ(shown.size("island"), QSizeF(224, 32));

    m->animated(Island::spring(), [&] { m->setExpanded(true); });
    QElapsedTimer clock;
    clock.start();
    double halfway = 0;
    while (clock.elapsed() < 1200) {
        shown.render();
        if (clock.elapsed() < 150 && halfway == 0) halfway = shown.size("island").width();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 16);
    }
    EXPECT_LT(halfway, 544) << "the card grows rather than jumping";
    EXPECT_EQ(shown.size("island").width(), 544);
    EXPECT_DOUBLE_EQ(shown.item("content")->opacity(), 1);
    EXPECT_EQ(shown.texts().front(), "Studio Display connected");

    // Each phase replaces the last without the outgoing view reading the
    // new phase's content.
    static QStringList warnings;
    warnings.clear();
    auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { warnings << text; });
    m->animated(Island::spring(), [&] { m->setPhase(IslandModel::Moving{"Starting…", 0}); });
    shown.render();
    m->setPhase(IslandModel::Moving{"Moving 1 of 2", 0.25});
    shown.render();
    m->animated(Island::spring(), [&] { m->setPhase(IslandModel::Done{"Moved 2 windows", true}); });
    shown.render();
    m->animated(Island::spring(), [&] { m->setExpanded(false); });
    shown.render();
    qInstallMessageHandler(previous);
    EXPECT_TRUE(warnings.isEmpty()) << warnings.join("\n").toStdString();
}

TEST(IslandViewQml, EveryControlIsReachedWithTheKeyboard) {
    Shown shown(chooser(2));
    auto press = [&](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(shown.view.get(), &event);
    };
    std::set<std::string> reached;
    for (int i = 0; i < 10; ++i) {
        press(Qt::Key_Tab);
        if (auto* f = shown.view->activeFocusItem()) reached.insert(f->objectName().toStdString());
    }
    for (const char* name : {"selectAll", "pill-1", "pill-2", "row-2-0", "row-2-1", "notNow",
                             "moveSelected", "moveAll"})
        EXPECT_TRUE(reached.count(name)) << name;

    // Space on a focused row flips its tick.
    shown.item("row-2-1")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_FALSE(shown.m->items()[1].selected);
}

TEST(IslandViewQml, PicturesAreCroppedToTheCard) {
    auto m = chooser(3);
    const QImage image = shootIsland(m, metric, {});
    ASSERT_FALSE(image.isNull());
    // The card and its shadow, not the 640-point panel.
    EXPECT_GE(image.width(), 544);
    EXPECT_LT(image.width(), 640);
    EXPECT_LT(image.height(), 640);
}
