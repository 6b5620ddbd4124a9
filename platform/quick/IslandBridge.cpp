#include "platform/quick/IslandBridge.h"

#include "platform/quick/QuickView.h"

namespace tarnwick::quick {

IslandBridge::IslandBridge(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words,
                           IslandActions actions, bool animate, QObject* parent)
    : QObject(parent)
    , model_(std::move(model))
    , measure_(std::move(measure))
    , words_(std::move(words))
    , actions_(std::move(actions))
    , animate_(animate) {}

IslandBridge::~IslandBridge() = default;

QImage shootIsland(std::shared_ptr<IslandModel> model, Measure measure, BuiltinWords words) {
    IslandBridge bridge(std::move(model), std::move(measure), std::move(words), {}, false);
    auto view = loadView("island/IslandView.qml", &bridge);
    return grab(*view);
}

} // namespace tarnwick::quick
