#include "app/App.h"

#include <algorithm>

namespace tarnwick {

App::App(Platform& platform, Island& island, SetupWindow& setupWindow)
    : platform_(platform)
    , island_(island)
    , setupWindow_(setupWindow)
    , prefs_(platform.defaults, platform.login, platform.log)
    , sound_(platform.audio, prefs_)
    , mover_(platform.windows, platform.screens, platform.dispatch, prefs_)
    , layouts_(platform.defaults, platform.screens, mover_) {}

void App::didFinishLaunching(const std::vector<std::string>& args) {
    controller_ =
        Controller::create({platform_, prefs_, sound_, island_, setupWindow_, mover_, layouts_});

    auto has = [&](const char* s) {
        return std::find(args.begin() + (args.empty() ? 0 : 1), args.end(), s) != args.end();
    };
    // The first switch present wins; the settings window arrives with its own work.
    if (has("--settings")) return;
    if (has("--choose"))
        controller_->chooseWindows();
    else if (has("--preview-connect"))
        controller_->preview(true);
    else if (has("--preview-disconnect"))
        controller_->preview(false);
}

} // namespace tarnwick
