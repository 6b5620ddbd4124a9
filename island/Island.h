#pragma once

#include "controller/MoveRunner.h"
#include "displays/Displays.h"
#include "island/IslandModel.h"
#include "ports/Platform.h"
#include "prefs/Prefs.h"
#include "windows/WindowMover.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// Whether an island is about displays that came or displays that went.
enum class Link { connected, disconnected };
// How an island goes: tucked back into the notch first, or at once.
enum class Closing { animated, immediately };
// Which of the offered windows a move takes.
enum class Selection { selected, all };

// Opens, drives and closes the single current island. Main thread only.
//
// Delayed steps are never cancelled: each one holds the model it was made
// for and does nothing once that model is no longer the current one, so a
// replaced or closed island's timers are harmless.
//
// With no screen at all there is nowhere to show an island: `announce` and
// `choose` then close any island that is still current and show nothing, and
// current() stays null. The coordinator is not told; the status line it set
// is all the user sees of that connect or disconnect.
class Island {
  public:
    struct Parts {
        Platform& platform;
        const Prefs& prefs;
        WindowMover& mover;
        MoveRunner& runner;
        std::vector<std::string> args; // the command line, for "--no-notch"
    };

    static constexpr double expandDelay = 0.05;
    static constexpr double announceTime = 2.6;
    static constexpr double minimumAnnounce = 1.6;
    static constexpr double closeAfterDone = 1.8;
    static constexpr double closeAfterFailure = 4.0;
    static constexpr double tuckTime = 0.45;
    static constexpr double panelSize = 640;

    explicit Island(Parts parts);

    void announce(const std::vector<Display>& subjects, Link link,
                  const std::vector<Display>& remaining);
    void choose(const Display& target, const std::vector<Display>& connected, double settle);
    // Hands the chosen windows of `m` to the move runner and follows its
    // progress. Only from the chooser, and only with something to move.
    void move(const std::shared_ptr<IslandModel>& m, Selection which);
    // Makes `display` the destination of `m`; the ticks return to their defaults.
    void retarget(const std::shared_ptr<IslandModel>& m, const Display& display);
    void close(Closing how);

    // The model of the island on screen, or null.
    std::shared_ptr<IslandModel> current() const { return state_->model; }

    // The spring shared by the island's animated changes.
    static Animation spring() { return Animation::spring(0.42, 0.82); }

  private:
    struct State {
        Parts parts;
        std::shared_ptr<Panel> panel;
        std::shared_ptr<IslandModel> model;
    };
    struct Spot {
        Size notch;
        PanelPlacement at;
    };

    // Replaces any current island by one made from `seed`; null when there
    // is no screen to show it on.
    std::shared_ptr<IslandModel> present(IslandModel::Seed seed);
    std::optional<Spot> place();
    bool moving() const;
    static void close(const std::shared_ptr<State>& s, Closing how);
    static bool isCurrent(const std::weak_ptr<State>& weak, const std::shared_ptr<IslandModel>& m);

    std::shared_ptr<State> state_;
};

} // namespace tarnwick
