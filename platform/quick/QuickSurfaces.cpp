#include "platform/quick/QuickSurfaces.h"

#include "platform/quick/QuickView.h"
#include "platform/quick/SettingsBridge.h"
#include "platform/quick/SetupBridge.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainterPath>
#include <QQuickItem>
#include <QRegion>
#include <QScreen>
#include <QTimer>

namespace tarnwick::quick {

namespace {

// "NAME X,Y WxH ..." for every visible, enabled item with an object name, in
// desktop pixels, on one line; named items nest, so the order is the tree's.
std::string describeControls(QQuickView& view) {
    std::string text;
    std::function<void(QQuickItem*)> walk = [&](QQuickItem* item) {
        if (!item->isVisible() || !item->isEnabled()) return;
        if (!item->objectName().isEmpty() && item->width() > 0 && item->height() > 0) {
            const QRectF r = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
            const QPoint at = view.position() + r.topLeft().toPoint();
            text += (text.empty() ? "" : " ") + ss(item->objectName()) + " " +
                    std::to_string(at.x()) + "," + std::to_string(at.y()) + " " +
                    std::to_string(int(r.width())) + "x" + std::to_string(int(r.height()));
        }
        for (auto* child : item->childItems())
            walk(child);
    };
    if (view.rootObject()) walk(view.rootObject());
    return text;
}

// Follows a view's controls for Hooks::controls, looking at most every
// 150 ms: an animation would otherwise report every frame, and some never stop.
void reportControls(QQuickView& view, const std::string& surface,
                    const std::function<void(const std::string&)>& report) {
    if (!report) return;
    auto* settle = new QTimer(&view);
    settle->setSingleShot(true);
    settle->setInterval(150);
    auto last = std::make_shared<std::string>();
    QObject::connect(settle, &QTimer::timeout, &view, [&view, surface, report, last] {
        auto now = describeControls(view);
        if (now == *last) return;
        *last = now;
        report(surface + " controls: " + now);
    });
    QObject::connect(&view, &QQuickWindow::frameSwapped, settle, [settle] {
        if (!settle->isActive()) settle->start();
    });
}

// The panel takes no focus when it appears (see the constructor), but takes
// it when clicked, so that Tab, Return and Escape then reach the island.
constexpr Qt::WindowFlags panelFlags =
    Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool;

} // namespace

class QuickPanel : public Panel {
  public:
    QuickPanel(QuickSurfaces& s, const Rect& frame, std::shared_ptr<IslandModel> model)
        : s_(s)
        , log_(s.log_.makePanel(frame, model)) {
        auto bridge = std::make_unique<IslandBridge>(
            model, s.hooks_.measure, s.hooks_.words ? s.hooks_.words() : BuiltinWords{}, s.actions_,
            true);
        view_.reset(loadView("island/IslandView.qml", bridge.get()).release());
        adopt(*view_, std::move(bridge));
        view_->setFlags(panelFlags);
        // Qt's xcb platform then maps it with a user time of 0, which window
        // managers read as "do not focus this new window".
        view_->setProperty("_q_showWithoutActivating", true);
        view_->setResizeMode(QQuickView::SizeRootObjectToView);
        if (s.hooks_.toDesktop) view_->setGeometry(s.hooks_.toDesktop(frame));
        if (s.hooks_.preparePanel) s.hooks_.preparePanel(*view_);
        reportControls(*view_, "island", s.hooks_.controls);
        if (s.hooks_.compositing && !s.hooks_.compositing())
            outlineWatch_ = QObject::connect(view_.get(), &QQuickWindow::frameSwapped, view_.get(),
                                             [this] { followOutline(); });
        s_.panel_ = view_.get();
    }
    ~QuickPanel() override {
        // The view outlives us by a turn of the event loop (OwnedView).
        QObject::disconnect(outlineWatch_);
        if (s_.panel_ == view_.get()) s_.panel_ = nullptr;
    }

    void orderFront() override {
        log_->orderFront();
        view_->show();
        view_->raise();
    }
    void orderOut() override {
        log_->orderOut();
        view_->hide();
    }

  private:
    // The card's bounds as drawn, its corners rounded: the island grows and
    // shrinks, so the cut follows every frame that changes it.
    void followOutline() {
        auto* root = view_->rootObject();
        auto* card = root ? root->findChild<QQuickItem*>("island") : nullptr;
        if (!card) return;
        const QRectF r = card->mapRectToScene(QRectF(0, 0, card->width(), card->height()));
        if (r == outline_) return;
        outline_ = r;
        QPainterPath path;
        path.addRoundedRect(r, 12, 12);
        view_->setMask(QRegion(path.toFillPolygon().toPolygon()));
    }

    QuickSurfaces& s_;
    std::unique_ptr<Panel> log_;
    QRectF outline_;
    QMetaObject::Connection outlineWatch_;
    OwnedView view_;
};

class QuickWindow : public Window {
  public:
    QuickWindow(QuickSurfaces& s, WindowKind kind, const std::string& title,
                std::shared_ptr<Observable> model)
        : s_(s)
        , kind_(kind)
        , log_(s.log_.makeWindow(kind, title, model)) {
        std::unique_ptr<QObject> bridge;
        if (kind == WindowKind::settings) {
            if (auto m = std::dynamic_pointer_cast<SettingsView>(model))
                bridge = std::make_unique<SettingsBridge>(m, true);
            view_.reset(loadView("settings/SettingsView.qml", bridge.get()).release());
        } else {
            if (auto m = std::dynamic_pointer_cast<SetupView>(model))
                bridge = std::make_unique<SetupBridge>(m, true);
            view_.reset(loadView("setup/SetupView.qml", bridge.get()).release());
        }
        adopt(*view_, std::move(bridge));
        reportControls(*view_, kind == WindowKind::settings ? "settings" : "setup",
                       s.hooks_.controls);
        view_->setTitle(qs(title));
        view_->setIcon(QIcon(":/tarnwick/resources/desktop/org.tarnwick.Tarnwick.svg"));
        // The close button only hides the window; the log hears of it.
        visibility_ = QObject::connect(view_.get(), &QWindow::visibleChanged, [this](bool shown) {
            if (!shown) log_->close();
        });
        slot() = view_.get();
    }
    ~QuickWindow() override {
        // The view outlives us by a turn of the event loop (OwnedView).
        QObject::disconnect(visibility_);
        if (slot() == view_.get()) slot() = nullptr;
    }

    bool visible() override { return view_->isVisible(); }
    Size size() override { return {double(view_->width()), double(view_->height())}; }
    void moveTo(const Point& origin) override {
        if (!s_.hooks_.toDesktop) return;
        const auto r = s_.hooks_.toDesktop({origin.x, origin.y, size().w, size().h});
        view_->setPosition(r.topLeft());
    }
    void centre() override {
        const QScreen* screen = QGuiApplication::primaryScreen();
        if (!screen) return;
        QRect r(QPoint(), view_->size());
        r.moveCenter(screen->availableGeometry().center());
        view_->setPosition(r.topLeft());
    }
    void makeKeyAndFront() override {
        log_->makeKeyAndFront();
        view_->show();
        view_->raise();
        view_->requestActivate();
    }
    void close() override {
        view_->hide();
        log_->close();
    }

  private:
    QWindow*& slot() { return kind_ == WindowKind::settings ? s_.settings_ : s_.setup_; }

    QuickSurfaces& s_;
    WindowKind kind_;
    std::unique_ptr<Window> log_;
    QMetaObject::Connection visibility_;
    OwnedView view_;
};

QuickSurfaces::QuickSurfaces(Surfaces& log, Hooks hooks)
    : log_(log)
    , hooks_(std::move(hooks)) {
    if (!hooks_.measure)
        hooks_.measure = [this](const std::string& t, double size, FontWeight w) {
            return textWidth(t, size, w);
        };
}

QuickSurfaces::~QuickSurfaces() = default;

std::unique_ptr<Panel> QuickSurfaces::makePanel(const Rect& frame,
                                                std::shared_ptr<IslandModel> model) {
    return std::make_unique<QuickPanel>(*this, frame, std::move(model));
}

std::unique_ptr<Window> QuickSurfaces::makeWindow(WindowKind kind, const std::string& title,
                                                  std::shared_ptr<Observable> model) {
    return std::make_unique<QuickWindow>(*this, kind, title, std::move(model));
}

void QuickSurfaces::activate() {
    log_.activate();
    for (QWindow* w : {settings_, setup_})
        if (w && w->isVisible()) w->requestActivate();
}

double QuickSurfaces::textWidth(const std::string& text, double pointSize, FontWeight weight) {
    return fontWidth(text, pointSize, weight);
}

QWindow* QuickSurfaces::window(WindowKind kind) const {
    return kind == WindowKind::settings ? settings_ : setup_;
}

double fontWidth(const std::string& text, double pixelSize, FontWeight weight) {
    QFont font;
    font.setPixelSize(std::max(1, int(pixelSize + 0.5)));
    switch (weight) {
    case FontWeight::regular:
        font.setWeight(QFont::Normal);
        break;
    case FontWeight::medium:
        font.setWeight(QFont::Medium);
        break;
    case FontWeight::semibold:
        font.setWeight(QFont::DemiBold);
        break;
    case FontWeight::bold:
        font.setWeight(QFont::Bold);
        break;
    }
    return QFontMetricsF(font).horizontalAdvance(qs(text));
}

} // namespace tarnwick::quick
