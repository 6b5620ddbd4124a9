#pragma once

#include "setup/SetupView.h"

#include <QImage>
#include <QObject>

#include <memory>

namespace tarnwick::quick {

// The first-run window as setup/SetupView.qml reads it: header, checklist
// and the current card, refreshed when the view model changes; the card's
// buttons handed back to it. Main thread only.
class SetupBridge : public QObject {
    Q_OBJECT
  public:
    SetupBridge(std::shared_ptr<SetupView> model, bool animate, QObject* parent = nullptr);
    ~SetupBridge() override;

  private:
    std::shared_ptr<SetupView> model_;
    bool animate_;
};

// The setup window as it looks now, whole; the scenario runner's pictures.
QImage shootSetup(std::shared_ptr<SetupView> model);

} // namespace tarnwick::quick
