#include "platform/x11/X11Workspace.h"

namespace tarnwick::x11 {

std::string bundlePathFor(const std::string& executable, const std::string& home) {
    const auto slash = executable.rfind('/');
    const std::string dir = slash == std::string::npos ? "" : executable.substr(0, slash);
    const std::string name = slash == std::string::npos ? executable : executable.substr(slash + 1);
    for (const std::string& installed :
         {std::string("/usr/bin"), std::string("/usr/local/bin"), home + "/.local/bin"})
        if (dir == installed) return "/Applications/" + name;
    return executable;
}

std::vector<AppRef> X11Workspace::runningApplications() {
    auto apps = windows_.applications();
    // A copy of ours has no window to be found by: the bus knows it.
    if (auto pid = bus_.otherCopy()) {
        auto copy = std::make_shared<RunningApp>();
        copy->pid = *pid;
        copy->bundleIdentifier = identifier;
        copy->localizedName = "Tarnwick";
        copy->policy = ActivationPolicy::accessory;
        apps.push_back(copy);
    }
    return apps;
}

std::optional<std::string> X11Workspace::applicationLocation(const std::string& bundleId) {
    if (auto entry = entries_.byId(bundleId)) return entry->filename;
    return std::nullopt;
}

std::string X11Workspace::icon(const std::string& path) {
    const std::string suffix = ".desktop";
    if (path.size() > suffix.size() &&
        path.compare(path.size() - suffix.size(), suffix.size(), suffix) == 0) {
        const auto slash = path.rfind('/');
        if (auto entry = entries_.byId(path.substr(slash == std::string::npos ? 0 : slash + 1)))
            return entry->icon;
    }
    return "";
}

} // namespace tarnwick::x11
