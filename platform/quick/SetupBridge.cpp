#include "platform/quick/SetupBridge.h"

#include "platform/quick/QuickView.h"

namespace tarnwick::quick {

namespace {

QString optional(const std::optional<std::string>& s) {
    return s ? qs(*s) : QString();
}

} // namespace

SetupBridge::SetupBridge(std::shared_ptr<SetupView> model, bool animate, QObject* parent)
    : QObject(parent)
    , model_(std::move(model))
    , animate_(animate) {
    if (!model_) return;
    refresh();
    subscription_ = model_->observe([this] {
        refresh();
        emit changed();
    });
}

SetupBridge::~SetupBridge() = default;

void SetupBridge::refresh() {
    const auto h = model_->header();
    header_ = {{"title", qs(h.title)}, {"subtitle", qs(h.subtitle)}};

    checklist_.clear();
    for (const auto& r : model_->checklist())
        checklist_ << QVariantMap{{"title", qs(r.title)},
                                  {"step", static_cast<int>(r.step)},
                                  {"state", rowStateName(r.state)},
                                  {"symbol", qs(r.symbol)},
                                  {"symbolColour", colourName(r.symbolColour)},
                                  {"semibold", r.weight == FontWeight::semibold},
                                  {"titleColour", colourName(r.titleColour)}};

    const auto c = model_->card();
    QVariantList buttons;
    for (const auto& b : c.buttons)
        buttons << QVariantMap{{"label", qs(b.label)},
                               {"isDefault", b.isDefault},
                               {"action", static_cast<int>(b.action)}};
    card_ = {
        {"step", static_cast<int>(c.step)}, {"title", qs(c.title)},           {"body", qs(c.body)},
        {"error", optional(c.error)},       {"waiting", optional(c.waiting)}, {"buttons", buttons},
        {"footer", optional(c.footer)}};
}

QVariantMap SetupBridge::layout() const {
    namespace L = SetupLayout;
    return {{"width", L::width},
            {"padding", L::padding},
            {"spacing", L::spacing},
            {"iconSize", L::iconSize},
            {"iconGap", L::iconGap},
            {"titleGap", L::titleGap},
            {"rowSpacing", L::rowSpacing},
            {"symbolSize", L::symbolSize},
            {"symbolGap", L::symbolGap},
            {"cardPadding", L::cardPadding},
            {"cardCornerRadius", L::cardCornerRadius},
            {"cardFillOpacity", L::cardFillOpacity},
            {"cardSpacing", L::cardSpacing},
            {"buttonSpacing", L::buttonSpacing},
            {"buttonsTopPadding", L::buttonsTopPadding},
            {"spinnerGap", L::spinnerGap}};
}

bool SetupBridge::press(int action) {
    if (!model_ || action < 0 || action > static_cast<int>(SetupAction::openSettings)) return false;
    // Pressing may close the window and drop the last other reference to the model.
    auto keep = model_;
    return keep->press(static_cast<SetupAction>(action));
}

QImage shootSetup(std::shared_ptr<SetupView> model) {
    SetupBridge bridge(std::move(model), false);
    auto view = loadView("setup/SetupView.qml", &bridge);
    return grab(*view);
}

} // namespace tarnwick::quick
