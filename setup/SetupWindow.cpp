#include "setup/SetupWindow.h"

namespace tarnwick {

bool SetupWindow::visible() const {
    return window_ && window_->visible();
}

void SetupWindow::show(SetupModel::Step start) {
    if (visible() && model_) {
        // A finished setup is not rewound by a later request.
        if (model_->step() != start && model_->step() != SetupModel::Step::done)
            model_->setStep(start);
        surfaces_.activate();
        window_->present();
        return;
    }
    // A hidden window is not brought back: its model may be stale, and a
    // fresh one reads the approval anew.
    auto model = SetupModel::create(ports_, setup_, start);
    auto view = std::make_shared<SetupView>(
        model, setup_, [this] { close(); }, showSettings_);
    auto window = surfaces_.makeWindow(WindowKind::setup, title, view);
    if (!window) return;
    window->centreOn(std::nullopt);
    window_ = std::move(window);
    model_ = std::move(model);
    view_ = std::move(view);
    surfaces_.activate();
    window_->present();
}

void SetupWindow::close() {
    // Taken out of the slots before closing, so that a close that calls
    // back into show() finds them empty.
    auto window = std::move(window_);
    auto model = std::move(model_);
    auto view = std::move(view_);
    if (window) window->close();
}

} // namespace tarnwick
