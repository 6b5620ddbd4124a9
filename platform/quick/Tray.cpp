#include "platform/quick/Tray.h"

#include "platform/quick/QuickView.h"

#include <QActionGroup>
#include <QApplication>
#include <QEventLoop>
#include <QTimer>

namespace tarnwick::quick {

void fillMenu(QMenu& menu, MenuModel& model) {
    // clear() keeps the submenus addMenu() made, since their actions belong
    // to them, not to the menu. Later: the rebuild may come while one is open.
    for (auto* a : menu.actions())
        if (auto* sub = a->menu(); sub && sub->parent() == &menu) sub->deleteLater();
    menu.clear();
    const auto& entries = model.entries();
    for (size_t i = 0; i < entries.size(); ++i) {
        const auto& e = entries[i];
        if (!e.visible) continue;
        switch (e.kind) {
        case MenuEntry::Kind::separator:
            menu.addSeparator();
            break;
        case MenuEntry::Kind::text: {
            auto* a = menu.addAction(qs(e.text));
            a->setEnabled(false);
            break;
        }
        case MenuEntry::Kind::button: {
            auto* a = menu.addAction(qs(e.text));
            // Queued: the model rebuilds the menu under the action otherwise.
            QObject::connect(a, &QAction::triggered, &menu, [&model, i] {
                QTimer::singleShot(0, [&model, i] { model.activate(i); });
            });
            break;
        }
        case MenuEntry::Kind::picker: {
            auto* sub = menu.addMenu(qs(e.text));
            auto* group = new QActionGroup(sub);
            group->setExclusive(true);
            for (size_t c = 0; c < e.choices.size(); ++c) {
                auto* a = sub->addAction(qs(e.choices[c]));
                a->setCheckable(true);
                a->setChecked(c == e.chosen);
                group->addAction(a);
                QObject::connect(a, &QAction::triggered, &menu, [&model, i, c] {
                    QTimer::singleShot(0, [&model, i, c] { model.choose(i, c); });
                });
            }
            break;
        }
        }
    }
}

Tray::Tray(std::unique_ptr<MenuModel> model, QObject* parent)
    : QObject(parent)
    , model_(std::move(model)) {
    icon_.setIcon(appIcon());
    icon_.setContextMenu(&menu_);
    // A left click opens the same menu, as a menu-bar item would.
    connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason r) {
        if (r == QSystemTrayIcon::Trigger) menu_.popup(QCursor::pos());
    });
    rebuild();
    subscription_ = model_->observe([this] { rebuild(); });
    icon_.show();
}

Tray::~Tray() = default;

QIcon Tray::appIcon() {
    return QIcon(symbolUrl("display.2").mid(3));
}

void Tray::rebuild() {
    fillMenu(menu_, *model_);
    for (const auto& e : model_->entries())
        if (e.visible && e.kind == MenuEntry::Kind::text) {
            icon_.setToolTip(qs(e.text));
            break;
        }
}

QImage shootMenu(MenuModel& model) {
    QMenu menu;
    fillMenu(menu, model);
    menu.popup(QPoint(0, 0));
    QEventLoop loop;
    QTimer::singleShot(100, &loop, &QEventLoop::quit);
    loop.exec();
    QImage image = menu.grab().toImage();
    menu.hide();
    return image;
}

} // namespace tarnwick::quick
