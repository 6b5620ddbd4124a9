#include "platform/linux/LogSurfaces.h"

#include "island/IslandModel.h"

#include <QString>

#include <cstdio>

namespace tarnwick::xdg {

namespace {

// "640x640 at the top of display 66, 8 below its usable area".
std::string describe(const PanelPlacement& at) {
    char text[160];
    const std::string screen =
        at.display ? "display " + std::to_string(*at.display) : "the primary";
    std::snprintf(text, sizeof text, "%.0fx%.0f at the top of %s, %.0f below its %s", at.size.w,
                  at.size.h, screen.c_str(), at.down,
                  at.from == PanelPlacement::From::screenTop ? "top edge" : "usable area");
    return text;
}

class LogPanel : public Panel {
  public:
    LogPanel(SystemLog& log, const PanelPlacement& at, std::shared_ptr<IslandModel> model)
        : log_(log)
        , at_(at)
        , model_(std::move(model)) {}

    void show() override {
        if (shown_) return;
        shown_ = true;
        log_.line("island shown " + describe(at_));
        record();
        subscription_ = model_->observe([this] { record(); });
    }
    void remove() override {
        if (!shown_) return;
        shown_ = false;
        subscription_ = {};
        log_.line("island closed");
    }

  private:
    void record() {
        // The same words the simulated desktop's transcript uses.
        auto phase = describePhase(model_->phase());
        if (phase == phase_) return;
        phase_ = phase;
        log_.line("island phase " + phase_);
    }

    SystemLog& log_;
    PanelPlacement at_;
    std::shared_ptr<IslandModel> model_;
    bool shown_ = false;
    std::string phase_;
    Subscription subscription_;
};

class LogWindow : public Window {
  public:
    LogWindow(SystemLog& log, WindowKind kind, std::string title)
        : log_(log)
        , name_(kind == WindowKind::settings ? "settings" : "setup")
        , title_(std::move(title))
        , size_(kind == WindowKind::settings ? Size{560, 780} : Size{460, 520}) {}

    bool visible() override { return visible_; }
    Size size() override { return size_; }
    void centreOn(std::optional<uint32_t>) override {}
    void present() override {
        if (!visible_) log_.line("window " + name_ + " shown: \"" + title_ + "\"");
        visible_ = true;
    }
    void close() override {
        if (visible_) log_.line("window " + name_ + " hidden");
        visible_ = false;
    }

  private:
    SystemLog& log_;
    std::string name_, title_;
    Size size_;
    bool visible_ = false;
};

} // namespace

std::unique_ptr<Panel> LogSurfaces::makePanel(const PanelPlacement& at,
                                              std::shared_ptr<IslandModel> model) {
    return std::make_unique<LogPanel>(log_, at, std::move(model));
}

std::unique_ptr<Window> LogSurfaces::makeWindow(WindowKind kind, const std::string& title,
                                                std::shared_ptr<Observable>) {
    return std::make_unique<LogWindow>(log_, kind, title);
}

double LogSurfaces::textWidth(const std::string& text, double pointSize, FontWeight) {
    // The drawn views measure with the desktop's fonts (QuickSurfaces); a
    // log has no font, so a fixed advance per character stands in.
    return 0.6 * pointSize * static_cast<double>(QString::fromStdString(text).size());
}

} // namespace tarnwick::xdg
