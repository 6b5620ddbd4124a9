#include "platform/sim/Recording.h"

#include "base/JsonText.h"

namespace tarnwick::sim {

namespace {

std::string names(const std::vector<Display>& displays) {
    nlohmann::json list = nlohmann::json::array();
    for (const auto& d : displays)
        list.push_back(d.name);
    return compactJson(list);
}

} // namespace

void RecordingIsland::announce(const std::vector<Display>& displays, Link link,
                               const std::vector<Display>& remaining) {
    t_.line("island", std::string("announce ") +
                          (link == Link::connected ? "connected " : "disconnected ") +
                          names(displays) + " remaining " + names(remaining));
}

void RecordingIsland::choose(const Display& target, const std::vector<Display>& connected,
                             double settle) {
    t_.line("island", "choose target " + tarnwick::quoted(target.name) + " connected " +
                          names(connected) + " settle " + formatNumber(settle));
}

void RecordingIsland::close(Closing how) {
    t_.line("island", how == Closing::animated ? "close animated" : "close");
}

void RecordingSetupWindow::show(SetupModel::Step start) {
    if (!step_) t_.line("window", "setup shown");
    if (step_ != SetupModel::Step::done) step_ = start;
}

} // namespace tarnwick::sim
