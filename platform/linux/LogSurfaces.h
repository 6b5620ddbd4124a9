#pragma once

#include "ports/Surfaces.h"
#include "ports/SystemLog.h"

namespace tarnwick::xdg {

// Our own surfaces as the log tells them: each says what it shows. The drawn
// views (QuickSurfaces) wrap these, so that the log keeps the story.
class LogSurfaces : public Surfaces {
  public:
    explicit LogSurfaces(SystemLog& log)
        : log_(log) {}

    std::unique_ptr<Panel> makePanel(const PanelPlacement& at,
                                     std::shared_ptr<IslandModel> model) override;
    std::unique_ptr<Window> makeWindow(WindowKind kind, const std::string& title,
                                       std::shared_ptr<Observable> model) override;
    void activate() override {}
    double textWidth(const std::string& text, double pointSize, FontWeight weight) override;

  private:
    SystemLog& log_;
};

} // namespace tarnwick::xdg
