#pragma once

#include "platform/quick/FormRows.h"
#include "settings/SettingsView.h"

#include <QImage>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QQmlEngine;

namespace tarnwick::quick {

// The settings form as settings/SettingsView.qml reads it, refreshed on the
// event loop's next turn after the view model changes (once however many
// changes that turn held), and the user's presses, switches, choices and
// slides handed back to it. Main thread only.
class SettingsBridge : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program for each settings window")
    // The form's groups and, in each, its lines: list models that follow
    // the form in place (FormRows.h).
    Q_PROPERTY(tarnwick::quick::FormSections* form READ form CONSTANT)
    Q_PROPERTY(bool animate READ animate CONSTANT)
    Q_PROPERTY(qreal windowWidth READ windowWidth CONSTANT)
    Q_PROPERTY(qreal windowHeight READ windowHeight CONSTANT)
  public:
    SettingsBridge(std::shared_ptr<SettingsView> model, bool animate, QObject* parent = nullptr);
    ~SettingsBridge() override;

    FormSections* form() { return &form_; }
    bool animate() const { return animate_; }
    qreal windowWidth() const { return SettingsView::width; }
    qreal windowHeight() const { return SettingsView::height; }

    // The form is looked up again for every action: a click may arrive after
    // the form changed under it, and then it must not act on a stale item.
    Q_INVOKABLE void press(int section, int item);
    Q_INVOKABLE void toggle(int section, int item, bool on);
    Q_INVOKABLE void choose(int section, int item, int choice);
    Q_INVOKABLE void slide(double seconds);
    Q_INVOKABLE void setAppIncluded(const QString& bundle, bool on);

  signals:
    void changed();

  private:
    void refresh();
    const FormItem* find(const std::vector<FormSection>& form, int section, int item) const;

    std::shared_ptr<SettingsView> model_;
    bool animate_;
    bool pending_ = false;
    FormSections form_;
    Subscription subscription_;
};

// The settings window as it looks now, whole; the scenario runner's pictures.
QImage shootSettings(std::shared_ptr<SettingsView> model);

// The images the forms draw besides plain files: "image://symbol/RRGGBB/NAME"
// is one of our symbols in that colour (the SVGs are white), and
// "image://appicon/NAME" an application's icon from the icon theme or a
// file, our own icon when neither has it.
void addImageProviders(QQmlEngine& engine);

} // namespace tarnwick::quick
