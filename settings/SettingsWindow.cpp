#include "settings/SettingsWindow.h"

#include <optional>

namespace tarnwick {

namespace {

// The screen the user is looking at: the one under the pointer, or else the
// one the platform calls main.
std::optional<ScreenInfo> screenUnderPointer(Screens& screens) {
    const auto all = screens.screens();
    const auto p = screens.mouseLocation();
    for (const auto& s : all)
        if (pointerIn(p, s.frame)) return s;
    if (auto main = screens.mainScreen(); main && *main < all.size()) return all[*main];
    return std::nullopt;
}

} // namespace

SettingsWindow::~SettingsWindow() {
    // A drawn view may hold the view model a little longer than we live, and
    // its reading asks us whether the window is on screen.
    if (view_) view_->stop();
}

void SettingsWindow::show() {
    auto& surfaces = parts_.platform.surfaces;
    if (!window_) {
        view_ = std::make_shared<SettingsView>(parts_, [this] { return visible(); });
        window_ = surfaces.makeWindow(WindowKind::settings, title, view_);
        if (!window_) return;
    } else if (!window_->visible()) {
        view_->appear();
    }
    // A window already on screen stays where the user put it.
    if (!window_->visible()) {
        if (auto screen = screenUnderPointer(parts_.platform.screens))
            window_->centreOn(screen->number);
    }
    surfaces.activate();
    window_->present();
}

} // namespace tarnwick
