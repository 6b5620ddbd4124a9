#pragma once

#include "layouts/Layouts.h"
#include "platform/sim/SimDesktop.h"
#include "windows/WindowMover.h"

#include <cstdint>
#include <optional>

namespace tarnwick::sim {

// The window engine and layout memory on a simulated desktop, without the
// coordinator around them: the ground of unit tests and benchmarks.
struct SimEngine {
    SimDispatch dispatch;
    Transcript transcript{dispatch};
    SimDesktop desk{dispatch, transcript};
    Prefs prefs{desk, desk, desk};
    WindowMover mover{desk, desk, prefs};
    Layouts layouts{desk, desk, mover};
    ~SimEngine() { dispatch.shutdown(); }

    // Runs `fn` where the core runs the window engine, on a background thread
    // where it may block, and lets virtual time pass until it is done: the
    // virtual time it took, or nullopt when it was still running after 600 s.
    template <typename F> std::optional<int64_t> offMain(F&& fn) {
        std::optional<int64_t> took;
        dispatch.background(QoS::userInitiated, [&] {
            const auto start = dispatch.nowMicros();
            fn();
            took = dispatch.nowMicros() - start;
        });
        dispatch.runUntil(dispatch.nowMicros() + SimDispatch::micros(600));
        return took;
    }
};

} // namespace tarnwick::sim
