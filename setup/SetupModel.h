#pragma once

#include "base/Observable.h"
#include "ports/Dispatch.h"
#include "ports/Processes.h"
#include "ports/Trust.h"
#include "ports/Workspace.h"

#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

class Setup;

// A spring curve for an animated change.
struct Spring {
    double response = 0;
    double dampingFraction = 0;
    double blendDuration = 0;
    bool operator==(const Spring&) const = default;
};

// The state behind the first-run window: the step shown, the approval as
// last seen, whether the user was sent to the settings, the last failure.
// It polls once a second so that the window moves on by itself as soon as
// the approval arrives. Main thread only.
class SetupModel : public Observable, public std::enable_shared_from_this<SetupModel> {
  public:
    enum class Step { move = 0, permission = 1, login = 2, done = 3 };
    static std::optional<Step> stepFromRaw(int raw);

    struct Ports {
        Dispatch& dispatch;
        Trust& trust;
        Workspace& workspace;
        Processes& processes;
    };

    // How long the interface may keep refusing an approval the platform has
    // recorded before the process restarts to pick it up.
    static constexpr double refusalGrace = 3.0;
    static constexpr double pollInterval = 1.0;
    // The settings page opens a moment after the prompt, so that it lands in front of it.
    static constexpr double settingsDelay = 0.4;
    static constexpr Spring stepSpring{0.4, 0.85, 0};

    // Starts the poll timer, which stops when the model is released.
    static std::shared_ptr<SetupModel> create(Ports ports, Setup& setup, Step start);
    ~SetupModel();

    Step step() const { return step_; }
    bool trusted() const { return trusted_; }
    bool asked() const { return asked_; }
    const std::optional<std::string>& error() const { return error_; }
    std::optional<double> trustedSince() const { return trustedSince_; }
    // How the view animates the latest step change: the spring after
    // advance(), nothing when the step was set from outside.
    std::optional<Spring> stepAnimation() const { return stepAnimation_; }

    // Shows another step without animation (the window brought back at a step).
    void setStep(Step step);
    void advance();
    void moveToApplications();
    void requestPermission();
    // Run by the timer.
    void poll();

    SetupModel(Ports ports, Setup& setup, Step start); // use create()

  private:
    Ports p_;
    Setup& setup_;
    Step step_;
    bool trusted_;
    bool asked_ = false;
    std::optional<std::string> error_;
    std::optional<double> trustedSince_;
    std::optional<Spring> stepAnimation_;
    WorkHandle timer_;
};

const char* rawValue(SetupModel::Step step);

} // namespace tarnwick
