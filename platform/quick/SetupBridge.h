#pragma once

#include "setup/SetupView.h"

#include <QImage>
#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace tarnwick::quick {

// The first-run window as setup/SetupView.qml reads it: header, checklist
// and the current card, refreshed when the view model changes; the card's
// buttons handed back to it. Main thread only.
class SetupBridge : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program for each first-run window")
    Q_PROPERTY(QVariantMap header READ header NOTIFY changed)
    Q_PROPERTY(QVariantList checklist READ checklist NOTIFY changed)
    Q_PROPERTY(QVariantMap card READ card NOTIFY changed)
    Q_PROPERTY(QVariantMap layout READ layout CONSTANT)
    Q_PROPERTY(bool animate READ animate CONSTANT)
  public:
    SetupBridge(std::shared_ptr<SetupView> model, bool animate, QObject* parent = nullptr);
    ~SetupBridge() override;

    QVariantMap header() const { return header_; }
    QVariantList checklist() const { return checklist_; }
    QVariantMap card() const { return card_; }
    QVariantMap layout() const;
    bool animate() const { return animate_; }

    // A SetupAction; false when the current card has no such button (a
    // click that arrives after the card changed).
    Q_INVOKABLE bool press(int action);

  signals:
    void changed();

  private:
    void refresh();

    std::shared_ptr<SetupView> model_;
    bool animate_;
    QVariantMap header_, card_;
    QVariantList checklist_;
    Subscription subscription_;
};

// The setup window as it looks now, whole; the scenario runner's pictures.
QImage shootSetup(std::shared_ptr<SetupView> model);

} // namespace tarnwick::quick
