#pragma once

#include "base/Observable.h"
#include "island/Island.h"
#include "island/IslandModel.h"
#include "island/IslandView.h"
#include "platform/quick/WindowRows.h"

#include <QImage>
#include <QObject>
#include <QQuickView>
#include <QString>
#include <QVariantList>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace tarnwick::quick {

// What the island's buttons and pills ask of the presenter that owns it.
struct IslandActions {
    std::function<void(const std::shared_ptr<IslandModel>&, Selection)> move;
    std::function<void(const std::shared_ptr<IslandModel>&, const Display&)> retarget;
    std::function<void(Closing)> close; // "Not now", Escape
};

// The island's model as island/IslandView.qml reads it: everything the
// IslandView decides, refreshed when the model changes, and the user's taps
// handed back to the model or the presenter. Main thread only.
class IslandBridge : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program for each island")
    // The card: notched, width, earPadding, outerWidth, minHeight (0 when
    // none), topSpace, shadowOpacity, shape ("notch" or "rounded"), earRadius,
    // cornerRadius, strokeOpacity.
    Q_PROPERTY(QVariantMap frame READ frame NOTIFY changed)
    Q_PROPERTY(bool expanded READ expanded NOTIFY changed)
    // "announce", "loading", "chooser", "moving", "done"; while the island is
    // tucked in, the phase it showed last, so that its content can fade out.
    Q_PROPERTY(QString kind READ kind NOTIFY changed)
    // Each phase's content, kept after the phase has passed: the outgoing
    // phase's view still reads it while it is being replaced.
    Q_PROPERTY(QVariantMap announce READ announce NOTIFY changed)
    Q_PROPERTY(QVariantMap loading READ loading NOTIFY changed)
    Q_PROPERTY(QVariantMap chooser READ chooser NOTIFY changed)
    Q_PROPERTY(QVariantMap moving READ moving NOTIFY changed)
    Q_PROPERTY(QVariantMap done READ done NOTIFY changed)
    // The chooser's window rows, kept while the chooser fades out like the
    // rest of its content.
    Q_PROPERTY(tarnwick::quick::WindowRows* windows READ windows CONSTANT)
    // How the latest change should play: curve ("none", "spring",
    // "easeOut"), response, damping, duration. Told before `changed`, so that
    // the transitions the change starts already use it.
    Q_PROPERTY(QVariantMap animation READ animation NOTIFY animationChanged)
    Q_PROPERTY(bool animate READ animate CONSTANT)

  public:
    // `animate` false: every change lands at its end state at once (pictures, tests).
    IslandBridge(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words,
                 IslandActions actions, bool animate, QObject* parent = nullptr);
    ~IslandBridge() override;

    const std::shared_ptr<IslandModel>& model() const { return model_; }

    QVariantMap frame() const { return frame_; }
    bool expanded() const { return model_->expanded(); }
    QString kind() const { return kind_; }
    QVariantMap announce() const { return contents_.value("announce").toMap(); }
    QVariantMap loading() const { return contents_.value("loading").toMap(); }
    QVariantMap chooser() const { return contents_.value("chooser").toMap(); }
    QVariantMap moving() const { return contents_.value("moving").toMap(); }
    QVariantMap done() const { return contents_.value("done").toMap(); }
    WindowRows* windows() { return &windows_; }
    QVariantMap animation() const { return animation_; }
    bool animate() const { return animate_; }

    Q_INVOKABLE void tap(const QString& id);
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void move(bool all);
    Q_INVOKABLE void retarget(int displayId);
    Q_INVOKABLE void notNow();

  signals:
    void changed();
    void animationChanged();

  private:
    void refresh();
    IslandView view() const { return IslandView(*model_, measure_, words_); }

    std::shared_ptr<IslandModel> model_;
    Measure measure_;
    BuiltinWords words_;
    IslandActions actions_;
    bool animate_;
    Subscription subscription_;

    QVariantMap frame_;
    QString kind_;
    QVariantMap contents_; // by kind
    WindowRows windows_;
    QVariantMap animation_;
};

// The island drawn for `model` at its end state, the panel's transparent
// surroundings cropped away; the pictures of the scenario runner.
QImage shootIsland(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words);

} // namespace tarnwick::quick
