#pragma once

#include "ports/Platform.h"
#include "settings/SettingsView.h"

#include <memory>

namespace tarnwick {

class Controller;
class Prefs;
class SetupWindow;
class Status;

// The settings window. It is made on the first show() and kept for the life
// of the process: closing only hides it, and the next show() brings back the
// same window with the same view model, which reads what nobody tells it of
// only while the window is on screen. Main thread only.
class SettingsWindow {
  public:
    using Parts = SettingsView::Parts;
    static constexpr const char* title = "Tarnwick";

    explicit SettingsWindow(Parts parts)
        : parts_(parts) {}
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;
    ~SettingsWindow();

    // Shows the window, centred on the screen under the pointer unless it
    // is already on screen, and brings it and this program to the front.
    void show();
    bool visible() const { return window_ && window_->visible(); }
    // Null until the first show().
    const std::shared_ptr<SettingsView>& view() const { return view_; }

  private:
    Parts parts_;
    std::shared_ptr<SettingsView> view_;
    std::unique_ptr<Window> window_;
};

} // namespace tarnwick
