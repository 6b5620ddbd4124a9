#include "platform/sim/SimWorkspace.h"

namespace tarnwick::sim {

std::optional<std::string> SimWorkspace::applicationLocation(const std::string& bundleId) {
    w_.dispatch.requireMain("Workspace::applicationLocation");
    if (bundleId == w_.self) return w_.bundlePath;
    // Remembered from every launch, so an application that has quit is still found.
    auto it = w_.installed.find(bundleId);
    if (it == w_.installed.end()) return std::nullopt;
    return it->second;
}

} // namespace tarnwick::sim
