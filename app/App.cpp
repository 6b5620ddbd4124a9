#include "app/App.h"

#include <algorithm>

namespace tarnwick {

App::App(Platform& platform, std::vector<std::string> args)
    : platform_(platform)
    , args_(std::move(args))
    , prefs_(platform.defaults, platform.login, platform.log)
    , sound_(platform.audio, prefs_)
    , mover_(platform.windows, platform.screens, platform.dispatch, prefs_)
    , layouts_(platform.defaults, platform.screens, mover_)
    , status_(platform.log)
    , runner_(platform.dispatch, status_, prefs_, mover_, layouts_)
    , island_({platform, prefs_, mover_, runner_, args_})
    , setup_(platform)
    , setupWindow_(platform, setup_, [this] { settingsWindow().show(); }) {}

Controller& App::controller() {
    // Whichever surface asks first creates the coordinator.
    if (!controller_)
        controller_ = Controller::create({platform_, prefs_, sound_, island_, setupWindow_, mover_,
                                          layouts_, status_, runner_});
    return *controller_;
}

SettingsWindow& App::settingsWindow() {
    if (!settingsWindow_) settingsWindow_.emplace(platform_, prefs_, controller(), setupWindow_);
    return *settingsWindow_;
}

void App::didFinishLaunching() {
    setup_.takeOverFromOtherCopies();
    auto& ctl = controller();
    if (auto step = setup_.needs()) {
        setupWindow_.show(*step);
        return;
    }
    auto has = [&](const char* s) {
        return std::find(args_.begin() + (args_.empty() ? 0 : 1), args_.end(), s) != args_.end();
    };
    // The first switch present wins.
    if (has("--settings"))
        settingsWindow().show();
    else if (has("--choose"))
        ctl.chooseWindows();
    else if (has("--preview-connect"))
        ctl.preview(true);
    else if (has("--preview-disconnect"))
        ctl.preview(false);
}

} // namespace tarnwick
