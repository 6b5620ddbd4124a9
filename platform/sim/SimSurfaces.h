#pragma once

#include "platform/sim/IslandRecorder.h"
#include "platform/sim/SimWorld.h"
#include "ports/Surfaces.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::sim {

class SimSurfaces;

// The screen a placement names by its number, the primary (the first) without
// one; null when it is not there. A screen the world gives no number to can
// only be reached as the primary.
const SimWorld::Screen* placedOn(const std::vector<SimWorld::Screen>& screens,
                                 std::optional<uint32_t> display);
// The rectangle (bottom-left coordinates) a panel placed `at` covers on
// `screens`, as the island's presenter measured it before it spoke in
// placements; nullopt when the screen it names is not there.
std::optional<Rect> panelFrame(const std::vector<SimWorld::Screen>& screens,
                               const PanelPlacement& at);

// The island's panel. Its frame is fixed when it is made.
class SimPanel : public Panel {
  public:
    SimPanel(SimSurfaces& surfaces, const Rect& frame, std::shared_ptr<IslandModel> model);
    ~SimPanel() override;
    SimPanel(const SimPanel&) = delete;
    SimPanel& operator=(const SimPanel&) = delete;

    void show() override;
    void remove() override;

    const Rect& frame() const { return frame_; } // bottom-left
    bool shown() const { return shown_; }
    const std::shared_ptr<IslandModel>& model() const { return model_; }

  private:
    SimSurfaces& surfaces_;
    Rect frame_;
    std::shared_ptr<IslandModel> model_;
    bool shown_ = false;
    std::optional<IslandRecorder> recorder_; // while shown
};

// One of this program's own windows; not to be confused with the other
// applications' windows of the world. Made hidden, at the origin.
class SimWindow : public Window {
  public:
    SimWindow(SimSurfaces& surfaces, WindowKind kind, std::string title,
              std::shared_ptr<Observable> model);
    ~SimWindow() override;
    SimWindow(const SimWindow&) = delete;
    SimWindow& operator=(const SimWindow&) = delete;

    bool visible() override;
    Size size() override;
    void centreOn(std::optional<uint32_t> display) override;
    void present() override;
    void close() override;

    // The user presses the window's close button; like close(), it only hides it.
    void closeBox() { hide(); }

    WindowKind kind() const { return kind_; }
    const std::string& title() const { return title_; }
    Point origin() const { return origin_; } // bottom-left
    const std::shared_ptr<Observable>& model() const { return model_; }
    // "settings" or "setup", as the transcript names it.
    static const char* name(WindowKind kind);

  private:
    void hide();
    SimSurfaces& surfaces_;
    WindowKind kind_;
    std::string title_;
    std::shared_ptr<Observable> model_;
    Size size_;
    Point origin_;
    bool visible_ = false;
};

// Our own surfaces. Each panel and window the program makes is listed here
// while it exists, so that the runner can look at them and act for the user.
class SimSurfaces : public Surfaces {
  public:
    static constexpr Size settingsSize{560, 780};
    static constexpr Size setupSize{460, 420};
    // The system font's advance per character: a fixed fraction of the point
    // size, whatever the character or the weight.
    static constexpr double advance = 0.6;

    explicit SimSurfaces(SimWorld& world)
        : w_(world) {}

    std::unique_ptr<Panel> makePanel(const PanelPlacement& at,
                                     std::shared_ptr<IslandModel> model) override;
    std::unique_ptr<Window> makeWindow(WindowKind kind, const std::string& title,
                                       std::shared_ptr<Observable> model) override;
    void activate() override {
        w_.dispatch.requireMain("Surfaces::activate");
        w_.transcript.line("activate", "");
    }
    double textWidth(const std::string& text, double pointSize, FontWeight weight) override;

    // The newest panel still alive, or null.
    SimPanel* panel() const { return panels_.empty() ? nullptr : panels_.back(); }
    // The newest window of that kind still alive, or null.
    SimWindow* window(WindowKind kind) const;
    const std::vector<SimPanel*>& panels() const { return panels_; }

  private:
    friend class SimPanel;
    friend class SimWindow;
    SimWorld& w_;
    std::vector<SimPanel*> panels_;   // creation order
    std::vector<SimWindow*> windows_; // creation order
};

} // namespace tarnwick::sim
