#include "platform/quick/SettingsBridge.h"

#include "platform/quick/QuickView.h"

#include <QFileInfo>
#include <QIcon>
#include <QPainter>
#include <QQmlEngine>
#include <QQuickImageProvider>
#include <QSvgRenderer>

#include <set>

namespace tarnwick::quick {

namespace {

const char* kindName(FormItem::Kind k) {
    using K = FormItem::Kind;
    switch (k) {
    case K::header:
        return "header";
    case K::permission:
        return "permission";
    case K::button:
        return "button";
    case K::caption:
        return "caption";
    case K::status:
        return "status";
    case K::toggle:
        return "toggle";
    case K::segmented:
        return "segmented";
    case K::popup:
        return "popup";
    case K::slider:
        return "slider";
    case K::app:
        return "app";
    case K::value:
        return "value";
    }
    return "caption";
}

QVariantMap toVariant(const FormItem& i, int index) {
    QStringList choices;
    for (const auto& c : i.choices)
        choices << qs(c);
    return {
        {"kind", kindName(i.kind)},
        {"control", static_cast<int>(i.control)},
        {"text", qs(i.text)},
        {"detail", qs(i.detail)},
        {"symbol", qs(i.symbol)},
        {"trailingSymbol", qs(i.trailingSymbol)},
        {"icon", qs(i.icon)},
        {"tint", tintName(i.tint)},
        {"prominent", i.prominent},
        {"enabled", i.enabled},
        {"sameRow", i.sameRow},
        {"on", i.on},
        {"choices", choices},
        {"chosen", static_cast<int>(i.chosen)},
        {"value", i.value},
        {"minimum", i.minimum},
        {"maximum", i.maximum},
        {"step", i.step},
        {"display", static_cast<qulonglong>(i.display)},
        {"bundle", qs(i.bundle)},
        {"index", index},
    };
}

const QString appIconFile =
    QStringLiteral(":/tarnwick/resources/desktop/org.tarnwick.Tarnwick.svg");

class SymbolProvider : public QQuickImageProvider {
  public:
    SymbolProvider()
        : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requested) override {
        const auto slash = id.indexOf('/');
        const QColor colour(slash > 0 ? "#" + id.left(slash) : QStringLiteral("#000000"));
        const QString name = id.mid(slash + 1);
        const QSize want(requested.width() > 0 ? requested.width() : 24,
                         requested.height() > 0 ? requested.height() : 24);
        QImage image(want, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QSvgRenderer svg(":/tarnwick/resources/symbols/" + name + ".svg");
        if (svg.isValid()) {
            QPainter p(&image);
            svg.render(&p);
            // The artwork is one colour; its coverage becomes the tint.
            p.setCompositionMode(QPainter::CompositionMode_SourceIn);
            p.fillRect(image.rect(), colour);
        }
        if (size) *size = want;
        return image;
    }
};

class AppIconProvider : public QQuickImageProvider {
  public:
    AppIconProvider()
        : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requested) override {
        const QSize want(requested.width() > 0 ? requested.width() : 20,
                         requested.height() > 0 ? requested.height() : 20);
        QString name = QUrl::fromPercentEncoding(id.toUtf8());
        if (name.startsWith("file:")) name = name.mid(5);
        QIcon icon;
        if (name.startsWith('/') && QFileInfo::exists(name))
            icon = QIcon(name);
        else if (!name.isEmpty())
            icon = QIcon::fromTheme(name);
        QPixmap pixmap = icon.isNull() ? QPixmap() : icon.pixmap(want);
        if (pixmap.isNull()) pixmap = QIcon(appIconFile).pixmap(want);
        if (size) *size = want;
        return pixmap;
    }
};

} // namespace

SettingsBridge::SettingsBridge(std::shared_ptr<SettingsView> model, bool animate, QObject* parent)
    : QObject(parent)
    , model_(std::move(model))
    , animate_(animate) {
    if (!model_) return;
    refresh();
    // A move sets a status line per window, and the whole form is made
    // again for each: what changed within one turn of the event loop is
    // drawn once, on the next.
    subscription_ = model_->observe([this] {
        if (pending_) return;
        pending_ = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                pending_ = false;
                refresh();
                emit changed();
            },
            Qt::QueuedConnection);
    });
}

SettingsBridge::~SettingsBridge() = default;

void SettingsBridge::refresh() {
    std::vector<FormSections::Section> sections;
    int untitled = 0;
    for (const auto& s : model_->form()) {
        FormSections::Section section{s.title.empty() ? "#" + std::to_string(untitled++)
                                                      : "title:" + s.title,
                                      qs(s.title),
                                      qs(s.footer),
                                      QVariant(),
                                      {}};
        if (!s.items.empty() && s.items.front().kind == FormItem::Kind::header) {
            section.header = toVariant(s.items.front(), 0);
        } else {
            // Items marked sameRow join the line of the item before them.
            std::vector<const FormItem*> firsts;
            std::set<std::string> keys;
            int others = 0;
            for (size_t n = 0; n < s.items.size(); ++n) {
                const auto& item = s.items[n];
                if (item.sameRow && !section.lines.empty()) {
                    section.lines.back().items << toVariant(item, int(n));
                    continue;
                }
                std::string key =
                    item.kind == FormItem::Kind::app
                        ? "app:" + item.bundle
                        : std::string(kindName(item.kind)) + "#" + std::to_string(others++);
                // Should a bundle be listed twice, the second is a line of its own.
                while (!keys.insert(key).second)
                    key += "+";
                // Filled buttons stand apart on their own; a rule between them is noise.
                const bool separated =
                    !firsts.empty() && !item.prominent && !firsts.back()->prominent;
                section.lines.push_back({key, {toVariant(item, int(n))}, separated});
                firsts.push_back(&item);
            }
        }
        sections.push_back(std::move(section));
    }
    form_.update(std::move(sections));
}

const FormItem* SettingsBridge::find(const std::vector<FormSection>& form, int section,
                                     int item) const {
    if (section < 0 || size_t(section) >= form.size()) return nullptr;
    const auto& items = form[section].items;
    if (item < 0 || size_t(item) >= items.size()) return nullptr;
    return &items[item];
}

void SettingsBridge::press(int section, int item) {
    if (!model_) return;
    const auto form = model_->form();
    if (auto* i = find(form, section, item)) model_->press(*i);
}

void SettingsBridge::toggle(int section, int item, bool on) {
    if (!model_) return;
    const auto form = model_->form();
    if (auto* i = find(form, section, item)) model_->toggle(*i, on);
}

void SettingsBridge::choose(int section, int item, int choice) {
    if (!model_ || choice < 0) return;
    const auto form = model_->form();
    if (auto* i = find(form, section, item)) model_->choose(*i, size_t(choice));
}

void SettingsBridge::slide(double seconds) {
    if (model_) model_->slide(seconds);
}

void SettingsBridge::setAppIncluded(const QString& bundle, bool on) {
    if (model_) model_->setAppIncluded(ss(bundle), on);
}

void addImageProviders(QQmlEngine& engine) {
    engine.addImageProvider("symbol", new SymbolProvider);
    engine.addImageProvider("appicon", new AppIconProvider);
}

QImage shootSettings(std::shared_ptr<SettingsView> model) {
    SettingsBridge bridge(std::move(model), false);
    auto view = loadView("settings/SettingsView.qml", &bridge);
    return grab(*view);
}

} // namespace tarnwick::quick
