#include "platform/quick/SettingsBridge.h"

#include "platform/quick/QuickView.h"

namespace tarnwick::quick {

SettingsBridge::SettingsBridge(std::shared_ptr<SettingsView> model, bool animate, QObject* parent)
    : QObject(parent)
    , model_(std::move(model))
    , animate_(animate) {}

SettingsBridge::~SettingsBridge() = default;

QImage shootSettings(std::shared_ptr<SettingsView> model) {
    SettingsBridge bridge(std::move(model), false);
    auto view = loadView("settings/SettingsView.qml", &bridge);
    return grab(*view);
}

} // namespace tarnwick::quick
