#pragma once

#include "layouts/Layouts.h"
#include "platform/sim/SimDesktop.h"
#include "windows/WindowMover.h"

namespace tarnwick::sim {

// The window engine and layout memory on a simulated desktop, without the
// coordinator around them: the ground of unit tests and benchmarks.
struct SimEngine {
    SimDispatch dispatch;
    Transcript transcript{dispatch};
    SimDesktop desk{dispatch, transcript};
    Prefs prefs{desk, desk, desk};
    WindowMover mover{desk, desk, dispatch, prefs};
    Layouts layouts{desk, desk, mover};
    ~SimEngine() { dispatch.shutdown(); }
};

} // namespace tarnwick::sim
