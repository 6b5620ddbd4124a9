#include "platform/x11/X11Workspace.h"

#include <filesystem>
#include <system_error>

namespace tarnwick::x11 {

bool installedAt(const std::string& executable, const std::string& home,
                 const std::function<bool(const std::string&)>& exists) {
    const auto slash = executable.rfind('/');
    const std::string dir = slash == std::string::npos ? "" : executable.substr(0, slash);
    for (const std::string& installed :
         {std::string("/usr/bin"), std::string("/usr/local/bin"), home + "/.local/bin"})
        if (dir == installed) return true;
    const std::string bin = "/bin";
    if (dir.size() > bin.size() && dir.compare(dir.size() - bin.size(), bin.size(), bin) == 0) {
        const auto prefix = dir.substr(0, dir.size() - bin.size());
        return exists(prefix + "/share/applications/" + X11Workspace::identifier + ".desktop");
    }
    return false;
}

bool X11Workspace::installed() {
    return installedAt(executable_, home_, [](const std::string& path) {
        std::error_code ec;
        return std::filesystem::is_regular_file(path, ec);
    });
}

std::optional<std::string> X11Workspace::installGuide() {
    return std::string("This copy of Tarnwick is not installed. Install it with its Debian "
                       "package, or from its source folder with \"cmake --install build --prefix "
                       "~/.local\", then open it from your applications menu. Nothing here was "
                       "moved or deleted.");
}

std::vector<AppRef> X11Workspace::runningApplications() {
    auto apps = windows_.applications();
    // A copy of ours has no window to be found by: the bus knows it.
    if (auto pid = bus_.otherCopy()) {
        auto copy = std::make_shared<RunningApp>();
        copy->pid = *pid;
        copy->identifier = identifier;
        copy->name = "Tarnwick";
        copy->kind = AppKind::accessory;
        apps.push_back(copy);
    }
    return apps;
}

std::optional<std::string> X11Workspace::applicationLocation(const std::string& identifier) {
    if (auto entry = entries_.byId(identifier)) return entry->filename;
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
