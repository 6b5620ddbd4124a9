#include "platform/quick/QuickSurfaces.h"

#include "platform/quick/QuickView.h"
#include "platform/quick/SettingsBridge.h"
#include "platform/quick/SetupBridge.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QQuickItem>
#include <QRegion>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <cmath>

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

// The panel is left to no window manager: one that keeps a focused
// full-screen window above every window it manages (openbox does) would
// otherwise hide the island under a film, and no managed window is ever
// focused or raised above it. Unmanaged, it takes no focus when it appears;
// a click gives it the keyboard (see PanelFocus), so that Tab, Return and
// Escape then reach the island. Should a platform manage it after all, it
// says it takes no focus (WM_HINTS' input false on X11), so that a window
// manager does not focus it when it appears either.
constexpr Qt::WindowFlags panelFlags = Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                       Qt::Tool | Qt::BypassWindowManagerHint |
                                       Qt::WindowDoesNotAcceptFocus;

// Our windows hold forms laid out for one width, so they are dialogs whose
// width is fixed and that offer no maximize: it would only stretch empty
// space. (openbox offers maximize to any window it may resize, whatever the
// Motif hints say, so the settings window's height is fixed too.)
constexpr Qt::WindowFlags windowFlags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                        Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                                        Qt::WindowCloseButtonHint;

// Qt asks no window manager to focus a window it bypasses, so a press on the
// panel asks for the keyboard itself; the user's press is what lets the
// panel take focus at all (Qt refuses to activate a window that takes none).
class PanelFocus : public QObject {
  public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* window = qobject_cast<QWindow*>(watched);
        if (window && event->type() == QEvent::MouseButtonPress && !window->isActive()) {
            window->setFlag(Qt::WindowDoesNotAcceptFocus, false);
            window->requestActivate();
        }
        return false;
    }
};

} // namespace

class QuickPanel : public Panel {
  public:
    QuickPanel(QuickSurfaces& s, const PanelPlacement& at, std::optional<QRect> geometry,
               std::shared_ptr<IslandModel> model)
        : s_(s)
        , log_(s.log_.makePanel(at, model)) {
        auto bridge = std::make_unique<IslandBridge>(
            model, s.hooks_.measure, s.hooks_.words ? s.hooks_.words() : BuiltinWords{}, s.actions_,
            true);
        view_.reset(loadView("island/IslandView.qml", bridge.get()).release());
        adopt(*view_, std::move(bridge));
        view_->setFlags(panelFlags);
        view_->installEventFilter(new PanelFocus(view_.get()));
        view_->setResizeMode(QQuickView::SizeRootObjectToView);
        if (geometry) view_->setGeometry(*geometry);
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

    void show() override {
        log_->show();
        view_->show();
        view_->raise();
    }
    void remove() override {
        log_->remove();
        view_->hide();
    }

  private:
    // The card's outline as drawn: the island grows, shrinks and rounds its
    // corners as it goes, so the cut follows every frame that changes them.
    // Nothing outside it is shown, the shadow included: without a
    // compositor a shadow could only be drawn black.
    void followOutline() {
        auto* root = view_->rootObject();
        auto* card = root ? root->findChild<QQuickItem*>("island") : nullptr;
        if (!card) return;
        QQuickItem* shape = nullptr;
        for (auto* child : card->childItems())
            if (child->property("cornerRadius").isValid() && child->property("notched").isValid())
                shape = child;
        if (!shape) return;
        const QRectF r = card->mapRectToScene(QRectF(0, 0, card->width(), card->height()));
        const Outline now{r, shape->property("notched").toBool(), shape->property("ear").toDouble(),
                          shape->property("cornerRadius").toDouble()};
        if (now == outline_) return;
        outline_ = now;
        view_->setMask(islandOutline(r, now.notched, now.ear, now.radius));
    }

    struct Outline {
        QRectF card;
        bool notched = false;
        double ear = 0, radius = 0;
        bool operator==(const Outline&) const = default;
    };

    QuickSurfaces& s_;
    std::unique_ptr<Panel> log_;
    Outline outline_;
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
        view_->setFlags(windowFlags);
        natural_ = view_->size();
        view_->setMinimumWidth(natural_.width());
        view_->setMaximumWidth(natural_.width());
        // The settings form scrolls, so its window may be cut short (see
        // place) and the form follows the window; the setup window grows
        // with its steps.
        if (kind == WindowKind::settings) {
            view_->setResizeMode(QQuickView::SizeRootObjectToView);
            view_->setMinimumHeight(natural_.height());
            view_->setMaximumHeight(natural_.height());
        }
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
    // The whole window, its frame included, at the size it opens with.
    Size size() override {
        const QSize s = opening().grownBy(frame());
        return {double(s.width()), double(s.height())};
    }
    void centreOn(std::optional<uint32_t> display) override {
        std::optional<QRect> area;
        if (s_.hooks_.screen) {
            auto screen = s_.hooks_.screen(display);
            if (!screen && display) screen = s_.hooks_.screen(std::nullopt);
            if (screen) area = screen->usable;
        } else if (const auto areas = usableAreas(); !areas.empty()) {
            area = areas.front();
        }
        if (area) place(centredIn(*area, size()));
    }
    void present() override {
        log_->present();
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

    // A window opens at its form's full size; only a small screen cuts it.
    QSize opening() const { return kind_ == WindowKind::settings ? natural_ : view_->size(); }
    QMargins frame() {
        return s_.hooks_.frameExtents ? s_.hooks_.frameExtents(*view_) : view_->frameMargins();
    }
    std::vector<QRect> usableAreas() const {
        if (s_.hooks_.usableAreas) return s_.hooks_.usableAreas();
        std::vector<QRect> out;
        if (const QScreen* primary = QGuiApplication::primaryScreen())
            out.push_back(primary->availableGeometry());
        return out;
    }

    // Puts the window's frame at `wanted` (desktop pixels), within the
    // usable area of the screen that holds most of it.
    void place(const QRect& wanted) {
        const auto areas = usableAreas();
        QRect frameRect = wanted;
        if (!areas.empty()) {
            const QRect* best = &areas.front();
            qint64 most = -1;
            for (const auto& a : areas) {
                const QRect common = a.intersected(wanted);
                const qint64 size = common.isEmpty() ? 0 : qint64(common.width()) * common.height();
                if (size > most) {
                    most = size;
                    best = &a;
                }
            }
            frameRect = fitFrame(wanted, *best);
        }
        const QMargins m = frame();
        QRect content = frameRect.marginsRemoved(m);
        content.setWidth(natural_.width());
        if (kind_ == WindowKind::settings) {
            view_->setMinimumHeight(content.height());
            view_->setMaximumHeight(content.height());
        }
        view_->setGeometry(content);
    }

    QuickSurfaces& s_;
    WindowKind kind_;
    std::unique_ptr<Window> log_;
    QMetaObject::Connection visibility_;
    OwnedView view_;
    QSize natural_;
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

std::unique_ptr<Panel> QuickSurfaces::makePanel(const PanelPlacement& at,
                                                std::shared_ptr<IslandModel> model) {
    std::optional<QRect> geometry;
    if (hooks_.screen) {
        const auto screen = hooks_.screen(at.display);
        if (!screen) return nullptr;
        geometry = panelGeometry(*screen, at);
    }
    return std::make_unique<QuickPanel>(*this, at, geometry, std::move(model));
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

QRegion islandOutline(const QRectF& card, bool notched, double ear, double radius) {
    const double w = card.width(), h = card.height();
    if (w <= 0 || h <= 0) return {};
    // The same clamps as the drawing: ears no wider than half the card, and
    // corners that fit what is left.
    const double tx = notched ? std::clamp(ear, 0.0, w / 2) : 0;
    const double ty = notched ? std::clamp(ear, 0.0, h) : 0;
    const double r = notched ? std::max(0.0, std::min({radius, (h - ty) / 2, (w - 2 * tx) / 2}))
                             : std::max(0.0, std::min({radius, w / 2, h / 2}));
    auto arc = [r](double dy) { return r - std::sqrt(std::max(0.0, r * r - dy * dy)); };
    // How far in from the card's left (and right) edge the outline is at `v`
    // below the card's top.
    auto inset = [&](double v) {
        if (notched && v < ty) {
            // The ear's quadratic from the top corner, controlled at (tx, 0):
            // y = t^2 ty, x = tx (2t - t^2).
            const double t = std::sqrt(v / ty);
            return tx * (2 * t - t * t);
        }
        if (!notched && v < r) return arc(r - v);
        if (v > h - r) return tx + arc(v - (h - r));
        return tx;
    };
    std::vector<QRect> rows;
    for (int y = int(std::floor(card.top())); y < int(std::ceil(card.bottom())); ++y) {
        const double v = y + 0.5 - card.top();
        if (v < 0 || v > h) continue;
        const double in = inset(v);
        const int first = int(std::ceil(card.left() + in - 0.5));
        const int last = int(std::floor(card.right() - in - 0.5));
        if (last >= first) rows.emplace_back(first, y, last - first + 1, 1);
    }
    QRegion region;
    region.setRects(rows.data(), int(rows.size()));
    return region;
}

QRect panelGeometry(const QuickSurfaces::ScreenPixels& screen, const PanelPlacement& at) {
    const QRect& edge = at.from == PanelPlacement::From::screenTop ? screen.frame : screen.usable;
    const QRect& f = screen.frame;
    return QRect(int(f.x() + f.width() / 2.0 - at.size.w / 2), int(edge.y() + at.down),
                 int(at.size.w), int(at.size.h));
}

QRect centredIn(const QRect& area, Size size) {
    return QRect(int(area.x() + area.width() / 2.0 - size.w / 2),
                 int(area.y() + area.height() / 2.0 - size.h / 2), int(size.w), int(size.h));
}

QRect fitFrame(const QRect& frame, const QRect& area) {
    if (area.isEmpty()) return frame;
    QRect out(frame.topLeft(), QSize(std::min(frame.width(), area.width()),
                                     std::min(frame.height(), area.height())));
    out.moveLeft(std::clamp(out.left(), area.left(), area.right() + 1 - out.width()));
    out.moveTop(std::clamp(out.top(), area.top(), area.bottom() + 1 - out.height()));
    return out;
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
