#include "app/AppDelegate.h"

#include "app/App.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick {

std::optional<LaunchSwitch> firstSwitch(const std::vector<std::string>& args) {
    static const std::array<std::pair<const char*, LaunchSwitch>, 4> switches{{
        {"--settings", LaunchSwitch::settings},
        {"--choose", LaunchSwitch::choose},
        {"--preview-connect", LaunchSwitch::previewConnect},
        {"--preview-disconnect", LaunchSwitch::previewDisconnect},
    }};
    // The first argument is the program's own path, never a switch, even if
    // someone names the binary "--settings".
    const auto from = args.empty() ? args.begin() : args.begin() + 1;
    for (const auto& [text, which] : switches)
        if (std::find(from, args.end(), text) != args.end()) return which;
    return std::nullopt;
}

void AppDelegate::applicationDidFinishLaunching() {
    // Two copies would both react to every display change and fight over
    // the same windows, so the newest one takes over before anything else.
    app_.setup().takeOverFromOtherCopies();
    auto& ctl = app_.controller();
    if (auto step = app_.setup().needs()) {
        // A half set-up program would fail at whatever a switch asks of it.
        app_.setupWindow().show(*step);
        return;
    }
    auto which = firstSwitch(app_.args());
    if (!which) return;
    switch (*which) {
    case LaunchSwitch::settings:
        app_.settingsWindow().show();
        break;
    case LaunchSwitch::choose:
        ctl.chooseWindows();
        break;
    case LaunchSwitch::previewConnect:
        ctl.preview(true);
        break;
    case LaunchSwitch::previewDisconnect:
        ctl.preview(false);
        break;
    }
}

bool AppDelegate::applicationShouldHandleReopen(bool) {
    app_.settingsWindow().show();
    return false;
}

} // namespace tarnwick
