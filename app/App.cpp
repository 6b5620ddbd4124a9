#include "app/App.h"

namespace tarnwick {

App::App(Platform& platform, std::vector<std::string> args)
    : platform_(platform)
    , args_(std::move(args))
    , prefs_(platform.defaults, platform.login, platform.log)
    , sound_(platform.audio, prefs_)
    , mover_(platform.windows, platform.screens, prefs_)
    , layouts_(platform.defaults, platform.screens, mover_)
    , status_(platform.log)
    , runner_(platform.dispatch, status_, prefs_, mover_, layouts_)
    , island_({platform, prefs_, mover_, runner_, args_})
    , setup_(platform)
    , setupWindow_(platform, setup_, [this] { settingsWindow().show(); }) {}

Controller& App::controller() {
    // Whichever surface asks first creates the coordinator.
    if (!controller_)
        controller_ = Controller::create(
            {platform_, prefs_, sound_, island_, setupWindow_, mover_, layouts_, status_, runner_});
    return *controller_;
}

SettingsWindow& App::settingsWindow() {
    if (!settingsWindow_)
        settingsWindow_.emplace(
            SettingsWindow::Parts{platform_, prefs_, controller(), status_, setupWindow_});
    return *settingsWindow_;
}

std::unique_ptr<MenuModel> App::makeMenu() {
    return std::make_unique<MenuModel>(MenuModel::Parts{
        controller(), status_, prefs_, platform_.processes, [this] { settingsWindow().show(); }});
}

} // namespace tarnwick
