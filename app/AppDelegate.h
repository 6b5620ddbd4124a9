#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

class App;

// The command-line switches a launch may carry; at most one of them acts.
enum class LaunchSwitch { settings, choose, previewConnect, previewDisconnect };

// The switch that acts for these arguments (program path first): the
// earliest of "--settings", "--choose", "--preview-connect",
// "--preview-disconnect" that is present as a whole argument, whatever the
// order on the command line. nullopt when none is.
std::optional<LaunchSwitch> firstSwitch(const std::vector<std::string>& args);

// What the application does when it has finished launching and when the user
// opens it again while it runs. Main thread.
class AppDelegate {
  public:
    explicit AppDelegate(App& app)
        : app_(app) {}

    void applicationDidFinishLaunching();
    // Always opens the settings window; the answer tells the platform not to
    // do its own reopening on top of that.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

  private:
    App& app_;
};

} // namespace tarnwick
