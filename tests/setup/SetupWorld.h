#pragma once

#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimSurfaces.h"
#include "setup/Setup.h"
#include "setup/SetupWindow.h"

#include <sstream>
#include <string>
#include <vector>

namespace tarnwick::setuptest {

// The first-run code alone on a simulated desktop, before any launch: what
// it does is read back from the transcript.
struct SetupWorld {
    sim::SimDispatch dispatch;
    sim::Transcript transcript{dispatch};
    sim::SimDesktop desk{dispatch, transcript};
    Platform platform = desk.platform();
    Setup setup{platform};
    SetupWindow window{platform, setup, [this] { transcript.line("settings", "shown"); }};
    size_t seen = 0;

    SetupWorld() {
        desk.addScreen({1, "Built-in Display", {0, 0, 1512, 982}, {0, 0, 1512, 957}, true});
    }
    ~SetupWorld() { dispatch.shutdown(); }

    void wait(double seconds) {
        dispatch.runUntil(dispatch.nowMicros() + sim::SimDispatch::micros(seconds));
    }
    std::shared_ptr<SetupModel> model(SetupModel::Step start) {
        return SetupModel::create(
            {dispatch, platform.trust, platform.workspace, platform.processes}, setup, start);
    }
    // The transcript lines written since the last call, each as "TIME WORD PAYLOAD".
    std::vector<std::string> did() {
        std::istringstream in(transcript.text().substr(seen));
        seen = transcript.text().size();
        std::vector<std::string> out;
        for (std::string line; std::getline(in, line);)
            out.push_back(line);
        return out;
    }
};

} // namespace tarnwick::setuptest
