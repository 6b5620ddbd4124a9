#pragma once

#include "base/Geometry.h"
#include "base/Observable.h"

#include <memory>
#include <string>

namespace tarnwick {

class IslandModel;

// The island's panel: a borderless, transparent, non-activating surface that
// stays above the menu bar and ordinary windows on every workspace.
class Panel {
  public:
    virtual ~Panel() = default;
    // Shows it at once, whether or not this program is active.
    virtual void orderFront() = 0;
    // Takes it off the screen at once; it is not shown again.
    virtual void orderOut() = 0;
};

enum class FontWeight { regular, medium, semibold, bold };

// One of this program's own windows (settings, first-run setup). Closing it
// with its close button only hides it.
class Window {
  public:
    virtual ~Window() = default;
    virtual bool visible() = 0;
    virtual Size size() = 0;
    // Moves its bottom-left corner to `origin` (bottom-left coordinates).
    virtual void moveTo(const Point& origin) = 0;
    // Centres it on the screen the platform thinks best.
    virtual void centre() = 0;
    // Shows it, makes it the key window and brings it in front.
    virtual void makeKeyAndFront() = 0;
    virtual void close() = 0;
};

enum class WindowKind { settings, setup };

// What the views are drawn on. Main thread only, panels and windows included.
class Surfaces {
  public:
    virtual ~Surfaces() = default;
    // A panel at `frame` (bottom-left coordinates) drawing `model`; not yet shown.
    virtual std::unique_ptr<Panel> makePanel(const Rect& frame,
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
