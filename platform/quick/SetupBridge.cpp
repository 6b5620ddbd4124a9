#include "platform/quick/SetupBridge.h"

#include "platform/quick/QuickView.h"

namespace tarnwick::quick {

SetupBridge::SetupBridge(std::shared_ptr<SetupView> model, bool animate, QObject* parent)
    : QObject(parent)
    , model_(std::move(model))
    , animate_(animate) {}

SetupBridge::~SetupBridge() = default;

QImage shootSetup(std::shared_ptr<SetupView> model) {
    SetupBridge bridge(std::move(model), false);
    auto view = loadView("setup/SetupView.qml", &bridge);
    return grab(*view);
}

} // namespace tarnwick::quick
