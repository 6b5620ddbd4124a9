#include "platform/sim/IslandRecorder.h"

#include "base/JsonText.h"

namespace tarnwick::sim {

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
