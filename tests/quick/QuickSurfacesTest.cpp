#include "platform/quick/QuickSurfaces.h"
#include "platform/quick/QuickView.h"
#include "settings/SettingsWindow.h"

#include "tests/app/ShellWorld.h"

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickView>

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::shelltest::ShellWorld;

namespace {

// The island's surface as drawn, alone and without its shadow, in a card
// `w` x `h` at (10, 10) of a transparent window.
QImage drawnCard(bool notched, double ear, double radius, int w, int h) {
    QQuickView view;
    view.setColor(Qt::transparent);
    const QString qml = QString("import QtQuick\n"
                                "Item { width: %1; height: %2\n"
                                "  IslandShape { x: 10; y: 10; width: %3; height: %4;"
                                " notched: %5; ear: %6; cornerRadius: %7 } }")
                            .arg(w + 20)
                            .arg(h + 20)
                            .arg(w)
                            .arg(h)
                            .arg(notched ? "true" : "false")
                            .arg(ear)
                            .arg(radius);
    // Beside the island's files, so that IslandShape is found as it is there.
    const QUrl url("qrc:/tarnwick/island/OutlineTest.qml");
    QQmlComponent component(view.engine());
    component.setData(qml.toUtf8(), url);
    auto* root = qobject_cast<QQuickItem*>(component.create());
    if (!root) {
        ADD_FAILURE() << component.errorString().toStdString();
        return {};
    }
    view.setContent(url, &component, root);
    view.resize(w + 20, h + 20);
    return quick::grab(view).convertToFormat(QImage::Format_ARGB32);
}

// Pixels where the cut and the drawing disagree: drawn mostly opaque but cut
// away, or cut in but mostly transparent. Edge pixels drawn half covered may
// go either way. Rows above `top` are left out: the notched body reaches
// above the card, past the window's top edge.
int disagreements(const QImage& drawn, const QRegion& cut, int top) {
    int wrong = 0;
    for (int y = top; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x) {
            const int alpha = qAlpha(drawn.pixel(x, y));
            const bool in = cut.contains(QPoint(x, y));
            if ((in && alpha < 64) || (!in && alpha > 192)) ++wrong;
        }
    return wrong;
}

} // namespace

TEST(IslandOutline, CutsTheWindowToTheCardAsDrawn) {
    struct Case {
        bool notched;
        double ear, radius;
        int w, h;
    } cases[] = {
        {false, 0, 17, 126, 34},  // tucked in, free-standing
        {false, 0, 28, 520, 300}, // the chooser
        {true, 12, 10, 210, 32},  // tucked into the camera housing
        {true, 12, 30, 544, 280}, // grown out of it
        {false, 0, 28, 40, 20},   // shrinking: the corners fit what is left
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.w) + "x" + std::to_string(c.h) +
                     (c.notched ? " notched" : " free-standing"));
        const QImage drawn = drawnCard(c.notched, c.ear, c.radius, c.w, c.h);
        ASSERT_FALSE(drawn.isNull());
        const QRegion cut =
            quick::islandOutline(QRectF(10, 10, c.w, c.h), c.notched, c.ear, c.radius);
        EXPECT_EQ(disagreements(drawn, cut, c.notched ? 10 : 0), 0);
        // Nothing below the card, where the shadow falls, and no square corners.
        EXPECT_FALSE(cut.intersects(QRect(0, 10 + c.h, c.w + 20, 10)));
        EXPECT_FALSE(cut.contains(QPoint(10, 10 + c.h - 1)));
        EXPECT_FALSE(cut.contains(QPoint(10 + c.w - 1, 10 + c.h - 1)));
        // Notched, the ears flare out along the screen's top edge.
        EXPECT_FALSE(cut.contains(QPoint(10, 10)));
        EXPECT_EQ(cut.contains(QPoint(10 + 5, 10)), c.notched);
    }
}

TEST(FitFrame, KeepsAWindowWhollyOnItsScreen) {
    const QRect screen(0, 0, 1280, 800);
    // Taller than the screen: as tall as it, from its top.
    EXPECT_EQ(quick::fitFrame(QRect(359, -10, 562, 820), screen), QRect(359, 0, 562, 800));
    // Past the bottom right: moved back, not shrunk.
    EXPECT_EQ(quick::fitFrame(QRect(1000, 700, 400, 300), screen), QRect(880, 500, 400, 300));
    // On the second screen, left of its left edge.
    EXPECT_EQ(quick::fitFrame(QRect(1270, 100, 300, 200), QRect(1280, 0, 1920, 1050)),
              QRect(1280, 100, 300, 200));
    EXPECT_EQ(quick::fitFrame(QRect(10, 20, 300, 200), screen), QRect(10, 20, 300, 200));
}

TEST(PanelGeometry, HangsFromTheEdgeItIsPlacedBelow) {
    const quick::QuickSurfaces::ScreenPixels screen{QRect(1920, 0, 2560, 1440),
                                                    QRect(1920, 30, 2560, 1410)};
    using From = PanelPlacement::From;
    EXPECT_EQ(quick::panelGeometry(screen, {.size = {640, 640}}), QRect(2880, 0, 640, 640));
    EXPECT_EQ(
        quick::panelGeometry(screen, {.from = From::usableTop, .down = 8, .size = {640, 640}}),
        QRect(2880, 38, 640, 640));
    // An odd width: the half pixel is dropped, as the desktop has none.
    EXPECT_EQ(quick::panelGeometry(screen, {.size = {641, 640}}), QRect(2879, 0, 641, 640));
}

namespace {

struct Settings : ShellWorld {
    quick::QuickSurfaces surfaces;
    std::unique_ptr<tarnwick::Window> window;
    static constexpr QMargins frame{1, 22, 1, 4};

    explicit Settings(QRect usable)
        : surfaces(platform.surfaces,
                   {.screen = [usable](std::optional<uint32_t> display)
                        -> std::optional<quick::QuickSurfaces::ScreenPixels> {
                        if (display && *display != 1) return std::nullopt;
                        return quick::QuickSurfaces::ScreenPixels{usable, usable};
                    },
                    .usableAreas = [usable] { return std::vector<QRect>{usable}; },
                    .frameExtents = [](QWindow&) { return frame; }}) {
        launch();
        app->settingsWindow().show();
        window =
            surfaces.makeWindow(WindowKind::settings, "Tarnwick", app->settingsWindow().view());
    }
    QQuickView& view() { return *static_cast<QQuickView*>(surfaces.window(WindowKind::settings)); }
    QRect frameOnDesktop() { return view().geometry().marginsAdded(frame); }
};

} // namespace

TEST(QuickWindow, OpensNoLargerThanAShortScreenAndTheFormScrolls) {
    const QRect usable(0, 0, 1280, 800);
    Settings s(usable);
    s.window->centreOn(std::nullopt);
    EXPECT_TRUE(usable.contains(s.frameOnDesktop())) << s.frameOnDesktop().y();
    EXPECT_EQ(s.view().width(), 560);
    EXPECT_EQ(s.view().height(), 800 - 22 - 4);
    auto* root = s.view().rootObject();
    ASSERT_TRUE(root);
    s.view().show();
    QCoreApplication::processEvents();
    EXPECT_EQ(root->height(), s.view().height());
    auto* scroll = root->findChild<QQuickItem*>("settingsScroll");
    ASSERT_TRUE(scroll);
    EXPECT_GT(scroll->property("contentHeight").toDouble(), scroll->height());

    // Centred on a screen shorter than the whole form, its frame's top would
    // stand above the screen: it stays on it, title bar included.
    s.window->centreOn(1);
    EXPECT_TRUE(usable.contains(s.frameOnDesktop())) << s.frameOnDesktop().y();

    // A form laid out for one width: the size is fixed, and no maximize.
    EXPECT_EQ(s.view().minimumSize(), s.view().size());
    EXPECT_EQ(s.view().maximumSize(), s.view().size());
    EXPECT_FALSE(s.view().flags() & Qt::WindowMaximizeButtonHint);
    EXPECT_TRUE(s.view().flags() & Qt::WindowCloseButtonHint);
}

TEST(QuickWindow, OpensAtItsFullSizeWhereThereIsRoom) {
    const QRect usable(0, 0, 1920, 1050);
    Settings s(usable);
    const Size size = s.window->size();
    EXPECT_EQ(size.w, 562);
    EXPECT_EQ(size.h, 806);
    s.window->centreOn(1);
    EXPECT_EQ(s.frameOnDesktop(), QRect(679, 122, 562, 806));
    s.window->centreOn(2); // a screen that went: the primary instead
    EXPECT_EQ(s.frameOnDesktop(), QRect(679, 122, 562, 806));
    EXPECT_EQ(s.view().size(), QSize(560, 780));
    EXPECT_EQ(s.view().maximumSize(), QSize(560, 780));
}
