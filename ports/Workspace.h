#pragma once

#include "ports/WindowAccess.h"

#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// This program's own installation and the applications the desktop knows
// of. Main thread only: the settings window lists the running applications
// with these, the window engine with WindowAccess. Nothing here fails: what
// the platform cannot tell reads as absent.
class Workspace {
  public:
    virtual ~Workspace() = default;
    virtual std::vector<AppRef> runningApplications() = 0;
    // Where the application with that identifier is installed.
    virtual std::optional<std::string> applicationLocation(const std::string& identifier) = 0;
    // An icon for the file at `path`, as a name the views can load; empty for none.
    virtual std::string icon(const std::string& path) = 0;

    // Where this program runs from: what starts it again, what the first run
    // copies.
    virtual std::string programPath() = 0;
    // Whether it runs from where the platform keeps installed programs, so
    // that the first run need not offer to move it there. A copy the
    // platform runs from a throwaway place is not installed.
    virtual bool installed() = 0;
    // The identifier the desktop knows this program by (running applications
    // carry the same), when it has one.
    virtual std::optional<std::string> programIdentifier() = 0;
    // The short version string, when the program has one.
    virtual std::optional<std::string> version() = 0;
    // Where a copy that the platform runs from a randomised read-only place
    // ("translocated") was launched from. nullopt when the lookup is not
    // available or has no answer.
    virtual std::optional<std::string> translocationOriginal(const std::string& path) = 0;
    // The platform's page where the user approves programs to drive other
    // windows; nullopt where approval has no page.
    virtual std::optional<std::string> approvalSettingsURL() = 0;
    // Set where programs are installed by a package or an install step
    // rather than by moving them into a folder: how to install this one.
    // The first run then copies, moves and trashes nothing and says this.
    virtual std::optional<std::string> installGuide() = 0;
};

} // namespace tarnwick
