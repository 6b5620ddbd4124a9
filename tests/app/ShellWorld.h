#pragma once

#include "app/App.h"
#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimFiles.h"
#include "platform/sim/SimSurfaces.h"
#include "platform/sim/SimWorkspace.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnwick::shelltest {

// The whole program on a simulated desktop, past its first-run questions,
// with the laptop's own screen attached.
struct ShellWorld {
    sim::SimDispatch dispatch;
    sim::Transcript transcript{dispatch};
    sim::SimDesktop desk{dispatch, transcript};
    Platform platform = desk.platform();
    std::unique_ptr<App> app;

    static constexpr const char* program = "/Applications/Tarnwick.app/Contents/MacOS/Tarnwick";

    ShellWorld() {
        desk.storeUserDefault("setup.askedLogin", true);
        desk.addScreen({1, "Built-in Display", {0, 0, 1512, 982}, {0, 0, 1512, 957}, true});
    }
    ~ShellWorld() { dispatch.shutdown(); }

    App& launch(std::vector<std::string> switches = {}) {
        switches.insert(switches.begin(), program);
        app = std::make_unique<App>(platform, switches);
        app->didFinishLaunching();
        return *app;
    }
    void wait(double seconds) {
        dispatch.runUntil(dispatch.nowMicros() + sim::SimDispatch::micros(seconds));
    }
    // Plugs in a monitor and lets the program settle on it.
    void plugStudio() {
        desk.addScreen({2, "Studio Display", {1512, 0, 2560, 1440}, {1512, 0, 2560, 1415}});
        desk.post(PlatformEvent::displaysChanged);
        wait(1);
    }
    void unplugStudio() {
        desk.unplug(2);
        desk.post(PlatformEvent::displaysChanged);
        wait(1);
    }
    bool said(const std::string& line) const {
        return transcript.text().find(line) != std::string::npos;
    }
};

} // namespace tarnwick::shelltest
