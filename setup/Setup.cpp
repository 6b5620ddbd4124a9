#include "setup/Setup.h"

#include "prefs/Prefs.h"

#include <vector>

namespace tarnwick {

namespace {

const std::string translocationMarker = "/AppTranslocation/";
const std::string systemApplications = "/Applications";

std::string lastComponent(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace

std::string standardizedPath(const std::string& path) {
    if (path.empty()) return path;
    const bool absolute = path.front() == '/';
    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= path.size()) {
        auto end = path.find('/', start);
        if (end == std::string::npos) end = path.size();
        std::string part = path.substr(start, end - start);
        start = end + 1;
        if (part.empty() || part == ".") continue;
        if (part == "..") {
            if (!parts.empty() && parts.back() != "..") {
                parts.pop_back();
                continue;
            }
            // Above the root there is nothing to go up to.
            if (absolute) continue;
        }
        parts.push_back(std::move(part));
    }
    std::string out = absolute ? "/" : "";
    for (size_t i = 0; i < parts.size(); ++i)
        out += (i ? "/" : "") + parts[i];
    return out.empty() ? "." : out;
}

const char* rawValue(SetupModel::Step step) {
    switch (step) {
    case SetupModel::Step::move:
        return "move";
    case SetupModel::Step::permission:
        return "permission";
    case SetupModel::Step::login:
        return "login";
    case SetupModel::Step::done:
        return "done";
    }
    return "done";
}

bool Setup::flag(const char* key) {
    return DefaultsRead::boolValue(p_.defaults.object(key));
}

std::string Setup::userApplications() {
    return standardizedPath(p_.files.homeDirectory() + "/Applications");
}

bool Setup::isTranslocated() {
    return p_.workspace.programPath().find(translocationMarker) != std::string::npos;
}

bool Setup::isInApplications() {
    return p_.workspace.installed();
}

std::optional<std::string> Setup::originalLocation() {
    const auto path = p_.workspace.programPath();
    if (!isTranslocated()) return path;
    return p_.workspace.translocationOriginal(path);
}

Setup::Moved Setup::moveToApplications() {
    // Where programs are installed, not moved, a copy of one file would run
    // without what it is installed with, and the launched one is the user's.
    if (auto guide = p_.workspace.installGuide()) return {std::nullopt, *guide};
    const auto source = standardizedPath(p_.workspace.programPath());
    std::string folder = systemApplications;
    if (!p_.files.isWritable(folder)) {
        folder = userApplications();
        if (auto failure = p_.files.createDirectory(folder)) return {std::nullopt, *failure};
    }
    const auto destination = folder + "/" + lastComponent(source);
    if (p_.files.exists(destination))
        if (auto failure = p_.files.trash(destination)) return {std::nullopt, *failure};
    if (auto failure = p_.files.copy(source, destination)) return {std::nullopt, *failure};
    // A copy that still carries the download's quarantine would be
    // translocated again on its next launch.
    if (auto failure = p_.processes.clearDownloadMark(destination)) return {std::nullopt, *failure};
    // The launched copy goes, so that the user cannot open the stale one by
    // habit; when it cannot be found or trashed the new copy still works.
    if (auto original = originalLocation())
        if (standardizedPath(*original) != standardizedPath(destination)) p_.files.trash(*original);
    return {destination, ""};
}

void Setup::relaunch(const std::string& path) {
    // The shell outlives this process and opens the copy once we are gone;
    // opening it now would only bring this instance to the front.
    p_.processes.startAfterQuit(path);
    p_.processes.quit();
}

void Setup::takeOverFromOtherCopies() {
    const auto own = p_.workspace.programIdentifier().value_or("");
    const auto pid = p_.processes.ownPid();
    for (const auto& app : p_.workspace.runningApplications())
        if (app && app->identifier == own && app->pid != pid) p_.processes.terminate(app->pid);
}

std::optional<SetupModel::Step> Setup::needs() {
    if (!isInApplications() && !flag(skipMoveKey)) return SetupModel::Step::move;
    if (!p_.trust.isProcessTrusted()) return SetupModel::Step::permission;
    if (flag(askedLoginKey)) return std::nullopt;
    if (!p_.login.enabled()) return SetupModel::Step::login;
    return std::nullopt;
}

void Setup::setLogin(bool open) {
    if (auto failure = open ? p_.login.registerApp() : p_.login.unregisterApp())
        p_.log.line("Launch at login: " + *failure);
    p_.defaults.set(askedLoginKey, true);
}

void Setup::skipMove() {
    p_.defaults.set(skipMoveKey, true);
}

void Setup::resetOwnPermission() {
    if (p_.trust.isProcessTrusted()) return;
    // Without an identifier the tool would forget every application's
    // approval, not just ours.
    const auto id = p_.workspace.programIdentifier();
    if (!id || id->empty()) return;
    p_.processes.forgetApproval(*id);
}

} // namespace tarnwick
