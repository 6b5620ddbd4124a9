#pragma once

#include "platform/quick/IslandBridge.h"
#include "ports/Surfaces.h"

#include <QMargins>
#include <QRect>
#include <QRegion>
#include <QWindow>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick::quick {

// Our own surfaces drawn with Qt Quick. Each is also handed to `log` (the
// program's log of what is shown), so that what the user sees and what the
// log says stay one story.
class QuickSurfaces : public Surfaces {
  public:
    // One screen in desktop pixels: all of it, and its area less the docks.
    struct ScreenPixels {
        QRect frame, usable;
    };
    struct Hooks {
        // The screen numbered `display` (see PanelPlacement), the primary
        // without one; nullopt when it is not there. Unset, panels stay where
        // Qt puts them and windows centre on the first of usableAreas.
        std::function<std::optional<ScreenPixels>(std::optional<uint32_t>)> screen;
        // Called once a panel's window exists, before it is first shown: for
        // what Qt cannot say itself (the window's type, every workspace).
        std::function<void(QWindow&)> preparePanel;
        // Each screen's area less the docks, in desktop pixels, the primary's
        // first; empty when unknown. Our windows open inside one of them.
        std::function<std::vector<QRect>()> usableAreas;
        // What the window manager adds around a window of ours (title bar,
        // borders), also before the window is first shown.
        std::function<QMargins(QWindow&)> frameExtents;
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

    std::unique_ptr<Panel> makePanel(const PanelPlacement& at,
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

// The island's card as drawn by island/IslandShape.qml in `card` (window
// pixels): with ears of `ear` flaring into the top edge and bottom corners of
// `radius` when notched, else a card rounded by `radius` all round. A pixel is
// in when its centre is inside the outline.
QRegion islandOutline(const QRectF& card, bool notched, double ear, double radius);

// Where a panel placed `at` on `screen` stands, in desktop pixels.
QRect panelGeometry(const QuickSurfaces::ScreenPixels& screen, const PanelPlacement& at);

// A frame of `size` centred on `area`, in desktop pixels, halves dropped.
QRect centredIn(const QRect& area, Size size);

// `frame` made no larger than `area` and moved the least to lie within it, so
// that a window opens wholly on its screen, title bar included.
QRect fitFrame(const QRect& frame, const QRect& area);

// The width of one line of `text` in the desktop's font at `pixelSize`
// (the views' points are Qt Quick's logical pixels).
double fontWidth(const std::string& text, double pixelSize, FontWeight weight);

} // namespace tarnwick::quick
