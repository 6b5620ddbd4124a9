#include "setup/SetupModel.h"

#include "ports/TrustProbe.h"
#include "setup/Setup.h"

namespace tarnwick {

std::optional<SetupModel::Step> SetupModel::stepFromRaw(int raw) {
    if (raw < 0 || raw > 3) return std::nullopt;
    return static_cast<Step>(raw);
}

SetupModel::SetupModel(Ports ports, Setup& setup, Step start)
    : p_(ports)
    , setup_(setup)
    , step_(start)
    , trusted_(ports.trust.isProcessTrusted()) {}

std::shared_ptr<SetupModel> SetupModel::create(Ports ports, Setup& setup, Step start) {
    auto model = std::make_shared<SetupModel>(ports, setup, start);
    // Weakly held: the window's slot decides how long the model lives.
    std::weak_ptr<SetupModel> weak = model;
    model->timer_ = ports.dispatch.every(pollInterval, [weak] {
        if (auto m = weak.lock()) m->poll();
    });
    return model;
}

SetupModel::~SetupModel() {
    if (timer_) timer_->cancel();
}

void SetupModel::setStep(Step step) {
    if (step == step_) return;
    step_ = step;
    stepAnimation_.reset();
    didChange();
}

void SetupModel::advance() {
    auto afterPermission = [&] { return setup_.needs() == Step::login ? Step::login : Step::done; };
    Step next = Step::done;
    switch (step_) {
    case Step::move:
        next = p_.trust.isProcessTrusted() ? afterPermission() : Step::permission;
        break;
    case Step::permission:
        next = afterPermission();
        break;
    case Step::login:
    case Step::done:
        next = Step::done;
        break;
    }
    step_ = next;
    stepAnimation_ = stepSpring;
    didChange();
}

void SetupModel::moveToApplications() {
    if (auto guide = p_.workspace.installGuide()) {
        error_ = *guide;
        didChange();
        return;
    }
    auto moved = setup_.moveToApplications();
    if (moved.destination) {
        setup_.relaunch(*moved.destination);
        return;
    }
    error_ = "Couldn't move it: " + moved.failure +
             " Drag Tarnwick into Applications yourself, then open it from there.";
    didChange();
}

void SetupModel::requestPermission() {
    setup_.resetOwnPermission();
    // The answer comes later, through the poll.
    p_.trust.requestWithPrompt();
    asked_ = true;
    didChange();
    auto& workspace = p_.workspace;
    auto& processes = p_.processes;
    p_.dispatch.after(settingsDelay, [&workspace, &processes] {
        processes.open(workspace.accessibilitySettingsURL());
    });
}

void SetupModel::poll() {
    const bool trusted = p_.trust.isProcessTrusted();
    if (trusted != trusted_) {
        trusted_ = trusted;
        didChange();
    }
    if (step_ == Step::permission && trusted_) {
        // The approval record can say yes while the interface still refuses
        // this process; only an answer from the interface shows it took effect.
        if (p_.trust.probe() != axAPIDisabled) {
            advance();
            return;
        }
        const double now = p_.dispatch.now();
        if (!trustedSince_) {
            trustedSince_ = now;
            return;
        }
        // A late approval gets its grace; after that only a new process
        // benefits from it.
        if (now - *trustedSince_ > refusalGrace) setup_.relaunch(p_.workspace.bundlePath());
        return;
    }
    trustedSince_.reset();
}

} // namespace tarnwick
