#pragma once

#include "app/MenuModel.h"

#include <QIcon>
#include <QImage>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

namespace tarnwick::quick {

// Brings `menu` in line with the menu model: buttons, text lines,
// separators, and the picker as a submenu whose chosen case carries a check
// mark; hidden entries are hidden actions. It works in place: an entry's
// action lives as long as the entry, and only entries that come or go add or
// remove actions, so a menu open on screen stays open and current.
void fillMenu(QMenu& menu, MenuModel& model);

// The program's icon in the desktop's tray (a StatusNotifierItem where the
// desktop offers one) with the menu model as its menu, brought up to date
// whenever the model changes; the tooltip shows the status. Main thread only.
class Tray : public QObject {
    Q_OBJECT
  public:
    explicit Tray(std::unique_ptr<MenuModel> model, QObject* parent = nullptr);
    ~Tray() override;

    QMenu& menu() { return menu_; }
    MenuModel& model() { return *model_; }
    QSystemTrayIcon& icon() { return icon_; }
    // The icon of two displays, drawn by us.
    static QIcon appIcon();

  private:
    void refresh();

    std::unique_ptr<MenuModel> model_;
    QMenu menu_;
    QSystemTrayIcon icon_;
    Subscription subscription_;
};

// The menu as it drops down, rendered; for pictures.
QImage shootMenu(MenuModel& model);

} // namespace tarnwick::quick
