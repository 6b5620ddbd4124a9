#pragma once

#include "platform/Platform.h"

namespace tarnwick {

class Controller;
class Prefs;
class SetupWindow;

// The settings window, made once and brought back by show(). TODO(settings).
class SettingsWindow {
  public:
    SettingsWindow(Platform& platform, Prefs& prefs, Controller& controller,
                   SetupWindow& setupWindow)
        : platform_(platform)
        , prefs_(prefs)
        , controller_(controller)
        , setupWindow_(setupWindow) {}
    void show();

  private:
    Platform& platform_;
    Prefs& prefs_;
    Controller& controller_;
    SetupWindow& setupWindow_;
};

} // namespace tarnwick
