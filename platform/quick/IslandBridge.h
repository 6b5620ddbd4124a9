#pragma once

#include "island/Island.h"
#include "island/IslandModel.h"
#include "island/IslandView.h"

#include <QImage>
#include <QObject>
#include <QQuickView>

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
  public:
    // `animate` false: every change lands at its end state at once (pictures, tests).
    IslandBridge(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words,
                 IslandActions actions, bool animate, QObject* parent = nullptr);
    ~IslandBridge() override;

    const std::shared_ptr<IslandModel>& model() const { return model_; }

  private:
    std::shared_ptr<IslandModel> model_;
    Measure measure_;
    BuiltinWords words_;
    IslandActions actions_;
    bool animate_;
};

// The island drawn for `model` at its end state, the panel's transparent
// surroundings cropped away; the pictures of the scenario runner.
QImage shootIsland(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words);

} // namespace tarnwick::quick
