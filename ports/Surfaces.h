#pragma once

#include "base/Geometry.h"
#include "base/Observable.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

class IslandModel;

// The island's panel: a borderless, transparent, non-activating surface that
// stays above the top bar and ordinary windows on every workspace.
class Panel {
  public:
    virtual ~Panel() = default;
    // Shows it at once, whether or not this program is active.
    virtual void show() = 0;
    // Takes it off the screen at once; it is not shown again.
    virtual void remove() = 0;
};

// Where the island's panel goes, in words a compositor can honour (a
// layer-shell surface anchored to the top of an output, say): centred on the
// top edge of one screen, `down` below it. The screen is named by its number
// in Screens (ScreenInfo::number), which stays the same while it is
// connected, where an index into the list would shift when another goes.
struct PanelPlacement {
    // Absent: the primary screen (the first of Screens::screens()).
    std::optional<uint32_t> display;
    // Below what the panel hangs: the screen's own top edge (into a camera
    // housing), or the top of its usable area (below a top bar).
    enum class From { screenTop, usableTop } from = From::screenTop;
    double down = 0; // from that edge to the panel's top edge
    Size size;
};

enum class FontWeight { regular, medium, semibold, bold };

// One of this program's own windows (settings, first-run setup). Closing it
// with its close button only hides it.
class Window {
  public:
    virtual ~Window() = default;
    virtual bool visible() = 0;
    // The whole window, its frame included.
    virtual Size size() = 0;
    // Centres it on the usable area of the screen numbered `display` (see
    // PanelPlacement); absent, or when that screen has gone, on the primary
    // screen's; with no screen at all it stays where it is. The platform may
    // move it further to keep it wholly on that screen.
    virtual void centreOn(std::optional<uint32_t> display) = 0;
    // Shows it, makes it the key window and brings it in front.
    virtual void present() = 0;
    virtual void close() = 0;
};

enum class WindowKind { settings, setup };

// What the views are drawn on. Main thread only, panels and windows included.
class Surfaces {
  public:
    virtual ~Surfaces() = default;
    // A panel placed as `at` says, drawing `model`; not yet shown. nullptr
    // when the screen it names is not (or no longer) there: the island then
    // shows nothing.
    virtual std::unique_ptr<Panel> makePanel(const PanelPlacement& at,
                                             std::shared_ptr<IslandModel> model) = 0;
    // A window of ours drawing `model` (the view model its view binds to).
    virtual std::unique_ptr<Window> makeWindow(WindowKind kind, const std::string& title,
                                               std::shared_ptr<Observable> model) = 0;
    // Brings this program to the front, taking focus from other applications.
    virtual void activate() = 0;
    // The width of one line of text in the system font, in points.
    virtual double textWidth(const std::string& text, double pointSize, FontWeight weight) = 0;
};

} // namespace tarnwick
