#include "platform/quick/IslandBridge.h"

#include "platform/quick/QuickView.h"

#include <algorithm>

namespace tarnwick::quick {

namespace {

QVariantMap button(const IslandView::Button& b) {
    return {{"text", qs(b.text)},
            {"prominent", b.prominent},
            {"enabled", b.enabled},
            {"opacity", b.opacity}};
}

QString controlName(IslandView::Control c) {
    switch (c) {
    case IslandView::Control::pills:
        return "pills";
    case IslandView::Control::compactPills:
        return "compact";
    case IslandView::Control::menu:
        return "menu";
    }
    return "pills";
}

QVariantMap chooserMap(const IslandView::Chooser& c) {
    const auto& h = c.header;
    QVariantMap header{{"symbol", qs(h.symbol)},
                       {"title", qs(h.title)},
                       {"subtitle", qs(h.subtitle)},
                       {"selectLabel", qs(h.selectLabel)},
                       {"selectOpacity", h.selectOpacity}};

    const auto& d = c.destination;
    QVariantList pills, entries;
    for (const auto& p : d.pills)
        pills.push_back(QVariantMap{{"display", p.display},
                                    {"symbol", qs(p.symbol)},
                                    {"label", qs(p.label)},
                                    {"selected", p.selected},
                                    {"width", p.width}});
    for (const auto& e : d.entries)
        entries.push_back(
            QVariantMap{{"display", e.display}, {"label", qs(e.label)}, {"symbol", qs(e.symbol)}});
    QVariantMap destination{{"caption", qs(d.caption)},
                            {"control", controlName(d.control)},
                            {"pills", pills},
                            {"menuSymbol", qs(d.menuSymbol)},
                            {"menuLabel", qs(d.menuLabel)},
                            {"entries", entries}};

    // The rows themselves are the bridge's `windows`.
    QVariantMap list{{"emptyText", qs(c.list.emptyText)},
                     {"height", c.list.height},
                     {"scrolls", c.list.scrolls}};

    return {{"header", header},
            {"destination", destination},
            {"list", list},
            {"notNow", button(c.notNow)},
            {"moveSelected", button(c.moveSelected)},
            {"moveAll", button(c.moveAll)}};
}

QString curveName(Animation::Curve c) {
    switch (c) {
    case Animation::Curve::spring:
        return "spring";
    case Animation::Curve::easeOut:
        return "easeOut";
    case Animation::Curve::none:
        break;
    }
    return "none";
}

// Where the card's opaque pixels end, with the shadow's fringe kept.
QRect paintedBounds(const QImage& image) {
    int left = image.width(), right = -1, top = image.height(), bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(line[x]) > 0) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
    }
    if (right < 0) return {};
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

} // namespace

IslandBridge::IslandBridge(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words,
                           IslandActions actions, bool animate, QObject* parent)
    : QObject(parent)
    , model_(std::move(model))
    , measure_(std::move(measure))
    , words_(std::move(words))
    , actions_(std::move(actions))
    , animate_(animate) {
    refresh();
    subscription_ = model_->observe([this] { refresh(); });
}

IslandBridge::~IslandBridge() = default;

void IslandBridge::refresh() {
    const auto v = view();
    const auto f = v.frame();
    frame_ = {{"notched", f.notched},
              {"width", f.width},
              {"earPadding", f.earPadding},
              {"outerWidth", f.outerWidth},
              {"minHeight", f.minHeight.value_or(0)},
              {"topSpace", f.topSpace},
              {"shadowOpacity", f.shadowOpacity}};
    if (auto* n = std::get_if<NotchShape>(&f.shape)) {
        frame_["shape"] = "notch";
        frame_["earRadius"] = n->top;
        frame_["cornerRadius"] = n->bottom;
        frame_["strokeOpacity"] = 0.0;
    } else if (auto* r = std::get_if<RoundedShape>(&f.shape)) {
        frame_["shape"] = "rounded";
        frame_["earRadius"] = 0.0;
        frame_["cornerRadius"] = r->radius;
        frame_["strokeOpacity"] = r->strokeOpacity;
    }

    // Tucked in, the last content stays so that it can fade out as the card shrinks.
    if (auto c = v.content()) {
        if (auto* a = std::get_if<IslandView::Announce>(&*c)) {
            kind_ = "announce";
            contents_[kind_] = QVariantMap{{"connected", a->connected},
                                           {"multiple", a->multiple},
                                           {"track", a->track},
                                           {"title", qs(a->title)},
                                           {"detail", qs(a->detail)}};
        } else if (auto* l = std::get_if<IslandView::Loading>(&*c)) {
            kind_ = "loading";
            contents_[kind_] = QVariantMap{{"text", qs(l->text)}};
        } else if (auto* ch = std::get_if<IslandView::Chooser>(&*c)) {
            kind_ = "chooser";
            contents_[kind_] = chooserMap(*ch);
            windows_.update(ch->list.rows);
        } else if (auto* mv = std::get_if<IslandView::Moving>(&*c)) {
            kind_ = "moving";
            contents_[kind_] = QVariantMap{{"text", qs(mv->text)}, {"fraction", mv->fraction}};
        } else if (auto* d = std::get_if<IslandView::Done>(&*c)) {
            kind_ = "done";
            contents_[kind_] =
                QVariantMap{{"symbol", qs(d->symbol)}, {"ok", d->ok}, {"text", qs(d->text)}};
        }
    }

    const auto& a = model_->animation();
    animation_ = {{"curve", animate_ ? curveName(a.curve) : QString("none")},
                  {"response", a.response},
                  {"damping", a.damping},
                  {"duration", a.duration}};
    emit animationChanged();
    emit changed();
}

void IslandBridge::tap(const QString& id) {
    IslandView::tap(*model_, ss(id));
}

void IslandBridge::selectAll() {
    IslandView::selectAllOrNone(*model_);
}

void IslandBridge::move(bool all) {
    if (actions_.move) actions_.move(model_, all ? Selection::all : Selection::selected);
}

void IslandBridge::retarget(int displayId) {
    if (!actions_.retarget) return;
    const auto& displays = model_->displays();
    auto it = std::find_if(displays.begin(), displays.end(), [&](const Display& d) {
        return d.id == static_cast<uint32_t>(displayId);
    });
    if (it != displays.end()) actions_.retarget(model_, *it);
}

void IslandBridge::notNow() {
    if (actions_.close) actions_.close(Closing::animated);
}

QImage shootIsland(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words) {
    IslandBridge bridge(std::move(model), std::move(measure), std::move(words), {}, false);
    auto view = loadView("island/IslandView.qml", &bridge);
    QImage image = grab(*view);
    if (image.isNull()) return image;
    image = image.convertToFormat(QImage::Format_ARGB32);
    const QRect painted = paintedBounds(image);
    if (painted.isEmpty()) return image;
    // A little room around the shadow, so the picture does not end at the blur.
    return image.copy(painted.adjusted(-8, 0, 8, 8).intersected(image.rect()));
}

} // namespace tarnwick::quick
