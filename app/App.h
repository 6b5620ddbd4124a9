#pragma once

#include "app/AppDelegate.h"
#include "app/MenuModel.h"
#include "app/Sound.h"
#include "controller/Controller.h"
#include "controller/MoveRunner.h"
#include "controller/Status.h"
#include "island/Island.h"
#include "layouts/Layouts.h"
#include "ports/Platform.h"
#include "prefs/Prefs.h"
#include "settings/SettingsWindow.h"
#include "setup/Setup.h"
#include "setup/SetupWindow.h"
#include "windows/WindowMover.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The composition root: the one instance of each core object, made at launch
// and kept for the life of the process.
class App {
  public:
    // `args` are the command-line arguments, program path first.
    App(Platform& platform, std::vector<std::string> args);

    // The start-up sequence.
    void didFinishLaunching() { delegate_.applicationDidFinishLaunching(); }
    // The user opened the program again while it runs.
    bool shouldHandleReopen(bool hasVisibleWindows) {
        return delegate_.applicationShouldHandleReopen(hasVisibleWindows);
    }

    Platform& platform() { return platform_; }
    const std::vector<std::string>& args() const { return args_; }
    Prefs& prefs() { return prefs_; }
    Status& status() { return status_; }
    Controller& controller();
    WindowMover& mover() { return mover_; }
    Layouts& layouts() { return layouts_; }
    MoveRunner& runner() { return runner_; }
    Island& island() { return island_; }
    Setup& setup() { return setup_; }
    SetupWindow& setupWindow() { return setupWindow_; }
    // Made on first use, once the coordinator exists.
    SettingsWindow& settingsWindow();
    // Null while nothing has asked for the settings window.
    SettingsWindow* settingsWindowIfMade() { return settingsWindow_ ? &*settingsWindow_ : nullptr; }
    // A menu-bar menu following the coordinator, the status and the
    // preferences for as long as it lives.
    std::unique_ptr<MenuModel> makeMenu();

  private:
    Platform& platform_;
    std::vector<std::string> args_;
    Prefs prefs_;
    Sound sound_;
    WindowMover mover_;
    Layouts layouts_;
    Status status_;
    MoveRunner runner_;
    Island island_;
    Setup setup_;
    SetupWindow setupWindow_;
    std::shared_ptr<Controller> controller_;
    std::optional<SettingsWindow> settingsWindow_;
    AppDelegate delegate_{*this};
};

} // namespace tarnwick
