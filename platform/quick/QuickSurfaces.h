#pragma once

#include "platform/Surfaces.h"
#include "platform/quick/IslandBridge.h"

#include <QRect>
#include <QWindow>

#include <functional>
#include <memory>

namespace tarnwick::quick {

// Our own surfaces drawn with Qt Quick. Each is also handed to `log` (the
// program's log of what is shown), so that what the user sees and what the
// log says stay one story.
class QuickSurfaces : public Surfaces {
  public:
    struct Hooks {
        // The desktop's top-left pixels of a frame in the core's bottom-left space.
        std::function<QRect(const Rect&)> toDesktop;
        // Called once a panel's window exists, before it is first shown: for
        // what Qt cannot say itself (every workspace, the outline without a
        // compositor).
        std::function<void(QWindow&)> preparePanel;
        // False: transparent pixels would show black, so the panel's window is
        // cut to the island's outline instead.
        std::function<bool()> compositing;
        // Set: each view's named controls and where they stand on the desktop
        // go here whenever they change, so that a script can press them.
        std::function<void(const std::string&)> controls;
        Measure measure;
        std::function<BuiltinWords()> words;
    };

    QuickSurfaces(Surfaces& log, Hooks hooks);
    ~QuickSurfaces() override;

    // Where the island's taps go; set once the presenter exists.
    void setIslandActions(IslandActions actions) { actions_ = std::move(actions); }

    std::unique_ptr<Panel> makePanel(const Rect& frame,
                                     std::shared_ptr<IslandModel> model) override;
    std::unique_ptr<Window> makeWindow(WindowKind kind, const std::string& title,
                                       std::shared_ptr<Observable> model) override;
    void activate() override;
    double textWidth(const std::string& text, double pointSize, FontWeight weight) override;

    // The newest panel's or window's Qt window, or null; for tests and pictures.
    QWindow* panelWindow() const { return panel_; }
    QWindow* window(WindowKind kind) const;

  private:
    friend class QuickPanel;
    friend class QuickWindow;
    Surfaces& log_;
    Hooks hooks_;
    IslandActions actions_;
    QWindow* panel_ = nullptr;
    QWindow* settings_ = nullptr;
    QWindow* setup_ = nullptr;
};

// The width of one line of `text` in the desktop's font at `pixelSize`
// (the views' points are Qt Quick's logical pixels).
double fontWidth(const std::string& text, double pixelSize, FontWeight weight);

} // namespace tarnwick::quick
