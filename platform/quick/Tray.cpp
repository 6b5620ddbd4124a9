#include "platform/quick/Tray.h"

#include "platform/quick/QuickView.h"

#include <QActionGroup>
#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <map>

namespace tarnwick::quick {

namespace {

// Each action carries its entry's identity, so that the menu can be brought
// in line with the model without being emptied.
QString idOf(const QAction& a) {
    return a.data().toString();
}

bool sameKind(const QAction& a, MenuEntry::Kind kind) {
    switch (kind) {
    case MenuEntry::Kind::separator:
        return a.isSeparator();
    case MenuEntry::Kind::picker:
        return a.menu() != nullptr;
    case MenuEntry::Kind::text:
    case MenuEntry::Kind::button:
        break;
    }
    return !a.isSeparator() && !a.menu();
}

void discard(QMenu& menu, QAction* a) {
    menu.removeAction(a);
    // Later: the menu may be handling an event of its own.
    if (auto* sub = a->menu(); sub && sub->parent() == &menu)
        sub->deleteLater();
    else
        a->deleteLater();
}

// A chosen action reaches the model on the next turn of the event loop, named
// by its entry's identity: the model rebuilds its entries, and may have done
// so more than once, by the time it runs.
QAction* make(QMenu& menu, MenuModel& model, const MenuEntry& e) {
    QAction* a = nullptr;
    switch (e.kind) {
    case MenuEntry::Kind::separator:
        a = new QAction(&menu);
        a->setSeparator(true);
        break;
    case MenuEntry::Kind::text:
        a = new QAction(&menu);
        a->setEnabled(false);
        break;
    case MenuEntry::Kind::button:
        a = new QAction(&menu);
        QObject::connect(a, &QAction::triggered, &menu, [&menu, &model, id = e.id] {
            QTimer::singleShot(0, &menu, [&model, id] { model.activate(id); });
        });
        break;
    case MenuEntry::Kind::picker: {
        auto* sub = new QMenu(&menu);
        new QActionGroup(sub);
        a = sub->menuAction();
        break;
    }
    }
    a->setData(qs(e.id));
    return a;
}

// Texts, visibility and check marks as the entry has them now.
void apply(QMenu& menu, MenuModel& model, QAction& a, const MenuEntry& e) {
    a.setVisible(e.visible);
    if (e.kind == MenuEntry::Kind::separator) return;
    a.setText(qs(e.text));
    if (e.kind != MenuEntry::Kind::picker) return;
    QMenu& sub = *a.menu();
    sub.setTitle(qs(e.text));
    auto* group = sub.findChild<QActionGroup*>();
    auto cases = sub.actions();
    if (cases.size() != qsizetype(e.choices.size())) {
        for (auto* c : cases)
            discard(sub, c);
        cases.clear();
        for (size_t c = 0; c < e.choices.size(); ++c) {
            auto* choice = sub.addAction(QString());
            choice->setCheckable(true);
            group->addAction(choice);
            QObject::connect(choice, &QAction::triggered, &menu, [&menu, &model, id = e.id, c] {
                QTimer::singleShot(0, &menu, [&model, id, c] { model.choose(id, c); });
            });
            cases << choice;
        }
    }
    for (size_t c = 0; c < e.choices.size(); ++c) {
        cases[qsizetype(c)]->setText(qs(e.choices[c]));
        cases[qsizetype(c)]->setChecked(c == e.chosen);
    }
}

} // namespace

void fillMenu(QMenu& menu, MenuModel& model) {
    std::map<QString, QAction*> existing;
    for (auto* a : menu.actions()) {
        if (idOf(*a).isEmpty() || existing.count(idOf(*a)))
            discard(menu, a);
        else
            existing[idOf(*a)] = a;
    }
    QList<QAction*> wanted;
    for (const auto& e : model.entries()) {
        QAction* a = nullptr;
        if (auto it = existing.find(qs(e.id)); it != existing.end()) {
            if (sameKind(*it->second, e.kind))
                a = it->second;
            else
                discard(menu, it->second);
            existing.erase(it);
        }
        if (!a) a = make(menu, model, e);
        apply(menu, model, *a, e);
        wanted << a;
    }
    for (const auto& [id, a] : existing)
        discard(menu, a);
    // Only what moved is put back in its place; the rest stays as it is.
    for (qsizetype i = 0; i < wanted.size(); ++i) {
        const auto now = menu.actions();
        if (i < now.size() && now[i] == wanted[i]) continue;
        menu.insertAction(i < now.size() ? now[i] : nullptr, wanted[i]);
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
    refresh();
    subscription_ = model_->observe([this] { refresh(); });
    icon_.show();
}

Tray::~Tray() = default;

QIcon Tray::appIcon() {
    return QIcon(symbolUrl("display.2").mid(3));
}

void Tray::refresh() {
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
