#include "platform/quick/QuickView.h"
#include "platform/quick/SetupBridge.h"

#include "tests/quick/Drawn.h"
#include "tests/setup/SetupWorld.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>

using namespace tarnwick;
using tarnwick::quicktest::drawn;
using tarnwick::setuptest::SetupWorld;
using Step = SetupModel::Step;

namespace {

// The running first-run window over a model on a simulated desktop.
struct Shown : SetupWorld {
    int closed = 0, settingsShown = 0;
    std::shared_ptr<SetupView> view;
    std::unique_ptr<quick::SetupBridge> bridge;
    std::unique_ptr<QQuickView> window;

    explicit Shown(Step start, bool trusted = false, bool animate = false) {
        desk.setTrusted(trusted);
        view = std::make_shared<SetupView>(
            model(start), setup, [this] { ++closed; }, [this] { ++settingsShown; });
        bridge = std::make_unique<quick::SetupBridge>(view, animate);
        window = quick::loadView("setup/SetupView.qml", bridge.get());
        window->show();
        window->requestActivate();
        QGuiApplication::processEvents();
    }
    QQuickItem* root() { return window->rootObject(); }
    // The scene as drawn now, its layouts settled.
    QList<QQuickItem*> items() {
        window->grabWindow();
        QList<QQuickItem*> out;
        drawn(root(), out);
        return out;
    }

    QQuickItem* find(const QString& name) {
        for (auto* item : items())
            if (item->objectName() == name) return item;
        return nullptr;
    }
    // The texts on screen, top to bottom and leading to trailing.
    std::vector<std::string> texts() {
        std::vector<std::pair<QPointF, std::string>> found;
        for (auto* item : items())
            if (item->inherits("QQuickText") && item->isVisible())
                found.emplace_back(item->mapToScene({0, 0}),
                                   quick::ss(item->property("text").toString()));
        std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
            return a.first.y() + 6 < b.first.y() ||
                   (std::abs(a.first.y() - b.first.y()) <= 6 && a.first.x() < b.first.x());
        });
        std::vector<std::string> out;
        for (const auto& [at, text] : found)
            out.push_back(text);
        return out;
    }
    // The card's buttons as drawn: "label" or "label (default)".
    std::vector<std::string> buttons() {
        std::vector<std::string> out;
        for (int n = 0;; ++n) {
            auto* b = find(QString("cardButton%1").arg(n));
            if (!b) return out;
            out.push_back(quick::ss(b->property("text").toString()) +
                          (b->property("isDefault").toBool() ? " (default)" : ""));
        }
    }
    void key(Qt::Key k) {
        QKeyEvent press(QEvent::KeyPress, k, Qt::NoModifier);
        QKeyEvent release(QEvent::KeyRelease, k, Qt::NoModifier);
        QGuiApplication::sendEvent(window.get(), &press);
        QGuiApplication::sendEvent(window.get(), &release);
    }
};

} // namespace

TEST(SetupViewQml, EveryCardShowsWhatTheModelSays) {
    Shown w(Step::move);
    ASSERT_TRUE(w.root());
    EXPECT_EQ(w.root()->width(), 460);
    auto check = [&](const std::vector<std::string>& want) {
        EXPECT_EQ(w.texts(), w.view->texts());
        EXPECT_EQ(w.buttons(), want);
        // As tall as its content: nothing cut off at the bottom.
        auto* card = w.find("setupCard");
        ASSERT_TRUE(card);
        EXPECT_NEAR(card->mapToScene({0, card->height()}).y() + 24, w.root()->height(), 0.5);
    };
    check({"Move to Applications (default)", "Keep it here"});

    EXPECT_TRUE(w.bridge->press(int(SetupAction::keepHere)));
    EXPECT_EQ(w.view->model()->step(), Step::permission);
    check({"Open System Settings (default)"});
    const double before = w.root()->height();

    EXPECT_TRUE(w.bridge->press(int(SetupAction::openSystemSettings)));
    check({"Reset and try again"});
    EXPECT_GT(w.root()->height(), before); // the footer grew the window
    EXPECT_TRUE(w.find("cardSpinner")->isVisible());

    w.desk.setTrusted(true);
    w.wait(1);
    ASSERT_EQ(w.view->model()->step(), Step::login);
    check({"Open at login (default)", "Not now"});
    // A click that lands after the card changed does nothing.
    EXPECT_FALSE(w.bridge->press(int(SetupAction::keepHere)));
    EXPECT_EQ(w.view->model()->step(), Step::login);
}

TEST(SetupViewQml, ReturnAnswersTheDefaultButtonOnly) {
    Shown w(Step::login, true);
    w.key(Qt::Key_Escape);
    EXPECT_EQ(w.view->model()->step(), Step::login);

    w.key(Qt::Key_Return);
    EXPECT_EQ(w.view->model()->step(), Step::done);
    EXPECT_EQ(w.texts().front(), "Tarnwick is ready");
    EXPECT_EQ(w.buttons(), (std::vector<std::string>{"Done (default)", "Open settings"}));
    EXPECT_EQ(w.closed, 0);

    // With a button focused by Tab, Return still means the default one.
    w.find("cardButton1")->forceActiveFocus(Qt::TabFocusReason);
    w.key(Qt::Key_Return);
    EXPECT_EQ(w.closed, 1);
    EXPECT_EQ(w.settingsShown, 0);

    // While waiting for the approval there is no default: Return does nothing.
    Shown waiting(Step::permission);
    waiting.bridge->press(int(SetupAction::openSystemSettings));
    waiting.did();
    waiting.key(Qt::Key_Return);
    EXPECT_EQ(waiting.did(), std::vector<std::string>{}); // no second request
    EXPECT_EQ(waiting.view->model()->step(), Step::permission);
}

TEST(SetupViewQml, AnimatedCardSettlesInPlace) {
    Shown w(Step::login, true, true);
    w.key(Qt::Key_Return);
    auto* card = w.find("setupCard");
    ASSERT_TRUE(card);
    EXPECT_LT(card->opacity(), 1); // on its way in
    QEventLoop loop;
    QTimer::singleShot(800, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_EQ(card->opacity(), 1);
    EXPECT_EQ(card->x(), 0);
    EXPECT_EQ(w.texts().front(), "Tarnwick is ready");
}
