#include "platform/sim/SimWorkspace.h"

#include "setup/Setup.h"

namespace tarnwick::sim {

std::optional<std::string> SimWorkspace::applicationLocation(const std::string& identifier) {
    w_.dispatch.requireMain("Workspace::applicationLocation");
    if (identifier == w_.self) return w_.bundlePath;
    // Remembered from every launch, so an application that has quit is still found.
    auto it = w_.installed.find(identifier);
    if (it == w_.installed.end()) return std::nullopt;
    return it->second;
}

bool SimWorkspace::installed() {
    w_.dispatch.requireMain("Workspace::installed");
    const std::string& path = w_.bundlePath;
    // A translocated copy is a throwaway, wherever it was made from: the
    // platform forgets the approval of a copy at a random path.
    if (path.find("/AppTranslocation/") != std::string::npos) return false;
    auto under = [&](const std::string& folder) { return path.rfind(folder + "/", 0) == 0; };
    return under("/Applications") || under(standardizedPath(w_.home + "/Applications"));
}

} // namespace tarnwick::sim
