#pragma once

#include "app/Sound.h"
#include "controller/Controller.h"
#include "island/Island.h"
#include "layouts/Layouts.h"
#include "platform/Platform.h"
#include "prefs/Prefs.h"
#include "setup/SetupWindow.h"
#include "windows/WindowMover.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

// The composition root: the one instance of each core object, made at launch
// and kept for the life of the process.
class App {
  public:
    App(Platform& platform, Island& island, SetupWindow& setupWindow);

    // The start-up sequence; `args` are the command-line arguments, program path first.
    void didFinishLaunching(const std::vector<std::string>& args);

    Platform& platform() { return platform_; }
    Prefs& prefs() { return prefs_; }
    Controller& controller() { return *controller_; }
    WindowMover& mover() { return mover_; }
    Layouts& layouts() { return layouts_; }

  private:
    Platform& platform_;
    Island& island_;
    SetupWindow& setupWindow_;
    Prefs prefs_;
    Sound sound_;
    WindowMover mover_;
    Layouts layouts_;
    std::shared_ptr<Controller> controller_;
};

} // namespace tarnwick
