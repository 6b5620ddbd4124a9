#include "platform/sim/SimSurfaces.h"

#include <algorithm>

namespace tarnwick::sim {

const SimWorld::Screen* placedOn(const std::vector<SimWorld::Screen>& screens,
                                 std::optional<uint32_t> display) {
    if (screens.empty()) return nullptr;
    if (!display) return &screens.front();
    auto it = std::find_if(screens.begin(), screens.end(),
                           [&](const SimWorld::Screen& s) { return !s.noid && s.id == *display; });
    return it == screens.end() ? nullptr : &*it;
}

std::optional<Rect> panelFrame(const std::vector<SimWorld::Screen>& screens,
                               const PanelPlacement& at) {
    const auto* screen = placedOn(screens, at.display);
    if (!screen) return std::nullopt;
    const double edge =
        at.from == PanelPlacement::From::screenTop ? screen->frame.maxY() : screen->visible.maxY();
    const double top = edge - at.down;
    const double midX = screen->frame.minX() + screen->frame.width() / 2;
    return Rect{midX - at.size.w / 2, top - at.size.h, at.size.w, at.size.h};
}

// --- panel

SimPanel::SimPanel(SimSurfaces& surfaces, const Rect& frame, std::shared_ptr<IslandModel> model)
    : surfaces_(surfaces)
    , frame_(frame)
    , model_(std::move(model)) {
    surfaces_.panels_.push_back(this);
}

SimPanel::~SimPanel() {
    std::erase(surfaces_.panels_, this);
}

void SimPanel::show() {
    surfaces_.w_.dispatch.requireMain("Panel::show");
    if (shown_) return;
    shown_ = true;
    surfaces_.w_.transcript.line("island", "panel " + formatRect(frame_));
    if (model_) recorder_.emplace(surfaces_.w_.transcript, model_);
}

void SimPanel::remove() {
    surfaces_.w_.dispatch.requireMain("Panel::remove");
    if (!shown_) return;
    shown_ = false;
    recorder_.reset();
    surfaces_.w_.transcript.line("island", "panel out");
}

// --- window

SimWindow::SimWindow(SimSurfaces& surfaces, WindowKind kind, std::string title,
                     std::shared_ptr<Observable> model)
    : surfaces_(surfaces)
    , kind_(kind)
    , title_(std::move(title))
    , model_(std::move(model))
    , size_(kind == WindowKind::settings ? SimSurfaces::settingsSize : SimSurfaces::setupSize) {
    surfaces_.windows_.push_back(this);
}

SimWindow::~SimWindow() {
    std::erase(surfaces_.windows_, this);
}

const char* SimWindow::name(WindowKind kind) {
    return kind == WindowKind::settings ? "settings" : "setup";
}

bool SimWindow::visible() {
    surfaces_.w_.dispatch.requireMain("Window::visible");
    return visible_;
}

Size SimWindow::size() {
    surfaces_.w_.dispatch.requireMain("Window::size");
    return size_;
}

void SimWindow::close() {
    surfaces_.w_.dispatch.requireMain("Window::close");
    hide();
}

void SimWindow::centreOn(std::optional<uint32_t> display) {
    surfaces_.w_.dispatch.requireMain("Window::centreOn");
    const auto& screens = surfaces_.w_.screens;
    const auto* screen = placedOn(screens, display);
    if (!screen) screen = placedOn(screens, std::nullopt);
    if (!screen) return;
    const Rect& v = screen->visible;
    origin_ = {v.minX() + v.width() / 2 - size_.w / 2, v.minY() + v.height() / 2 - size_.h / 2};
}

void SimWindow::present() {
    surfaces_.w_.dispatch.requireMain("Window::present");
    if (visible_) return;
    visible_ = true;
    surfaces_.w_.transcript.line("window", std::string(name(kind_)) + " shown");
}

void SimWindow::hide() {
    if (!visible_) return;
    visible_ = false;
    surfaces_.w_.transcript.line("window", std::string(name(kind_)) + " hidden");
}

// --- surfaces

std::unique_ptr<Panel> SimSurfaces::makePanel(const PanelPlacement& at,
                                              std::shared_ptr<IslandModel> model) {
    w_.dispatch.requireMain("Surfaces::makePanel");
    const auto frame = panelFrame(w_.screens, at);
    if (!frame) return nullptr;
    return std::make_unique<SimPanel>(*this, *frame, std::move(model));
}

std::unique_ptr<Window> SimSurfaces::makeWindow(WindowKind kind, const std::string& title,
                                                std::shared_ptr<Observable> model) {
    w_.dispatch.requireMain("Surfaces::makeWindow");
    return std::make_unique<SimWindow>(*this, kind, title, std::move(model));
}

SimWindow* SimSurfaces::window(WindowKind kind) const {
    auto it = std::find_if(windows_.rbegin(), windows_.rend(),
                           [kind](SimWindow* w) { return w->kind() == kind; });
    return it == windows_.rend() ? nullptr : *it;
}

double SimSurfaces::textWidth(const std::string& text, double pointSize, FontWeight) {
    w_.dispatch.requireMain("Surfaces::textWidth");
    // Code points, not bytes: continuation bytes of UTF-8 do not count.
    const auto codePoints = std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    });
    return advance * pointSize * static_cast<double>(codePoints);
}

} // namespace tarnwick::sim
