#pragma once

#include "controller/Status.h"
#include "displays/Displays.h"
#include "layouts/Layouts.h"
#include "ports/Dispatch.h"
#include "prefs/Prefs.h"
#include "windows/WindowMover.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// Runs one move of windows to a display: the listing and moving in the
// background, every status text on the main thread, then the caller's
// `done`. The coordinator's commands and the island's move buttons all come
// through here.
class MoveRunner {
  public:
    using Progress = std::function<void(int64_t index, int64_t count, const std::string& app)>;
    // `restored`: windows put back to the setup's saved layout before the move.
    using Done = std::function<void(const WindowMover::MoveResult&, int64_t restored)>;

    // Whether the setup's saved arrangement is put back before anything moves.
    enum class LayoutFirst { skip, whenRemembered };
    // Whether each window's turn is shown in the status line.
    enum class Reporting { perWindow, summaryOnly };

    struct Job {
        // Absent: every window, listed in the background when the move starts.
        std::optional<std::vector<AppWindow>> windows;
        Display target;
        std::vector<Display> all; // read on the main thread by the caller
        LayoutFirst layout = LayoutFirst::skip;
        Reporting reporting = Reporting::perWindow;
        std::string startText; // empty: "Moving windows to NAME…"
        Progress progress;     // on the main thread, after the status
        Done done;             // on the main thread, after the summary status
    };

    MoveRunner(Dispatch& dispatch, Status& status, const Prefs& prefs, WindowMover& mover,
               Layouts& layouts)
        : state_(std::make_shared<State>(State{dispatch, status, prefs, mover, layouts})) {}

    void run(Job job);
    // Whether a move started here has not reported yet. Main thread.
    bool running() const { return state_->running > 0; }

    // The line a finished move reads as: the move's summary, then how many
    // windows went back to their saved places, if any.
    static std::string summary(const WindowMover::MoveResult& result, const std::string& to,
                               int64_t restored);

  private:
    struct State {
        Dispatch& dispatch;
        Status& status;
        const Prefs& prefs;
        WindowMover& mover;
        Layouts& layouts;
        int running = 0; // main thread only
    };
    // Shared with the work in flight, which may outlive a move's caller.
    std::shared_ptr<State> state_;
};

} // namespace tarnwick
