#pragma once

#include "app/Sound.h"
#include "base/Observable.h"
#include "displays/Displays.h"
#include "island/Island.h"
#include "layouts/Layouts.h"
#include "ports/Platform.h"
#include "prefs/Prefs.h"
#include "setup/SetupWindow.h"
#include "windows/WindowMover.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// The coordinator: follows the connected displays, decides what a connect or
// a disconnect does, runs the move and layout commands and publishes the
// status line. Main thread only, but for the work it sends to the background.
// Observers are told when the display list changes; the status has its own.
class Controller : public Observable, public std::enable_shared_from_this<Controller> {
  public:
    struct Parts {
        Platform& platform;
        Prefs& prefs;
        Sound& sound;
        Island& island;
        SetupWindow& setupWindow;
        WindowMover& mover;
        Layouts& layouts;
        Status& status;
        MoveRunner& runner;
    };

    static constexpr double snapshotInterval = 30.0;

    // Runs the start-up steps: reads the displays, subscribes to the platform's
    // events and starts the snapshot timer.
    static std::shared_ptr<Controller> create(const Parts& parts);

    const std::vector<Display>& displays() const { return displays_; }
    const std::string& status() const { return parts_.status.text(); }

    void moveAll(const Display& target);
    void chooseWindows();
    void saveLayout();
    void restoreLayout();
    void preview(bool connected);

  private:
    explicit Controller(const Parts& parts);
    void start();
    void screensChanged();
    void settle();
    void connected(const std::vector<Display>& added);
    void disconnected(const std::vector<Display>& removed, const std::vector<Display>& remaining);
    void moveEverything();
    void rescue();
    void changed(bool pending) { changing_ = pending; }
    // Work for a change has ended; a later change keeps its own pending state.
    void changeDone() {
        if (!moveWork_ && !pending_) changed(false);
    }
    void setupArrived();
    void autoSnapshot();
    void log(const std::vector<std::string>& lines);
    // The Accessibility gate; hand-started commands also open the setup window.
    bool trusted(bool byHand);
    void setDisplays(std::vector<Display> displays);
    void setStatus(const std::string& text) { parts_.status.set(text); }

    Parts parts_;

    std::vector<Display> displays_;
    DisplayMap known_;
    WorkHandle pending_;
    bool asleep_ = false;
    double wokeAt_;
    std::vector<Display> arrivals_;
    double lastArrival_;
    WorkHandle moveWork_;
    WorkHandle snapshotTimer_;
    // From a display change until its move or announcement is done: the
    // windows are on their way and no snapshot may take them for a layout.
    bool changing_ = false;
    std::string setupKey_;
};

} // namespace tarnwick
