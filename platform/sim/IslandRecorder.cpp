#include "platform/sim/IslandRecorder.h"

#include "base/JsonText.h"

namespace tarnwick::sim {

std::string describePhase(const IslandModel::Phase& phase) {
    if (auto* m = std::get_if<IslandModel::Moving>(&phase))
        return "moving " + quoted(m->text) + " " + formatNumber(m->fraction);
    if (auto* d = std::get_if<IslandModel::Done>(&phase))
        return phaseName(phase) + " " + quoted(d->text);
    return phaseName(phase);
}

IslandRecorder::IslandRecorder(Transcript& transcript, std::shared_ptr<IslandModel> model)
    : t_(transcript)
    , model_(std::move(model))
    , phase_(describePhase(model_->phase()))
    , expanded_(model_->expanded()) {
    t_.line("island", "phase " + phase_);
    subscription_ = model_->observe([this] { record(); });
}

void IslandRecorder::record() {
    // A toggle or a rebuild changes neither; only what is new is written.
    auto phase = describePhase(model_->phase());
    if (phase != phase_) {
        phase_ = std::move(phase);
        t_.line("island", "phase " + phase_);
    }
    if (model_->expanded() != expanded_) {
        expanded_ = model_->expanded();
        t_.line("island", expanded_ ? "expanded yes" : "expanded no");
    }
}

} // namespace tarnwick::sim
