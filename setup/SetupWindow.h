#pragma once

#include "ports/Platform.h"
#include "setup/Setup.h"
#include "setup/SetupModel.h"
#include "setup/SetupView.h"

#include <functional>
#include <memory>

namespace tarnwick {

// The first-run window, "Welcome to Tarnwick", and the model behind it. One
// slot each for the window, its model and its view model: filled together
// by show() and emptied together by close(). The window's own close button
// only hides it; the slots keep it, and its model keeps polling, until the
// next show() replaces them. Main thread only.
class SetupWindow {
  public:
    static constexpr const char* title = "Welcome to Tarnwick";

    SetupWindow(Surfaces& surfaces, SetupModel::Ports ports, Setup& setup,
                std::function<void()> showSettings)
        : surfaces_(surfaces)
        , ports_(ports)
        , setup_(setup)
        , showSettings_(std::move(showSettings)) {}
    SetupWindow(Platform& platform, Setup& setup, std::function<void()> showSettings)
        : SetupWindow(platform.surfaces,
                      {platform.dispatch, platform.trust, platform.workspace, platform.processes},
                      setup, std::move(showSettings)) {}

    // Opens the window at `start`, or brings the open one forward; an open
    // setup is moved to `start` unless it is already finished.
    void show(SetupModel::Step start);
    // The view's close action: closes the window and releases window and model.
    void close();

    bool visible() const;
    const std::shared_ptr<SetupModel>& model() const { return model_; }
    const std::shared_ptr<SetupView>& view() const { return view_; }
    Window* window() const { return window_.get(); }

  private:
    Surfaces& surfaces_;
    SetupModel::Ports ports_;
    Setup& setup_;
    std::function<void()> showSettings_;
    std::unique_ptr<Window> window_;
    std::shared_ptr<SetupModel> model_;
    std::shared_ptr<SetupView> view_;
};

} // namespace tarnwick
