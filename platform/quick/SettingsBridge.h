#pragma once

#include "settings/SettingsView.h"

#include <QImage>
#include <QObject>

#include <memory>

namespace tarnwick::quick {

// The settings form as settings/SettingsView.qml reads it, refreshed when
// the view model changes, and the user's presses, switches, choices and
// slides handed back to it. Main thread only.
class SettingsBridge : public QObject {
    Q_OBJECT
  public:
    SettingsBridge(std::shared_ptr<SettingsView> model, bool animate, QObject* parent = nullptr);
    ~SettingsBridge() override;

  private:
    std::shared_ptr<SettingsView> model_;
    bool animate_;
};

// The settings window as it looks now, whole; the scenario runner's pictures.
QImage shootSettings(std::shared_ptr<SettingsView> model);

} // namespace tarnwick::quick
