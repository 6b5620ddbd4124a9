#include "platform/sim/Recording.h"

namespace tarnwick::sim {

void RecordingSetupWindow::show(SetupModel::Step start) {
    if (!step_) t_.line("window", "setup shown");
    if (step_ != SetupModel::Step::done) step_ = start;
}

} // namespace tarnwick::sim
