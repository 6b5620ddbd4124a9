#pragma once

#include "ports/Platform.h"
#include "setup/SetupModel.h"

#include <optional>
#include <string>

namespace tarnwick {

// "/a//b/./c/../d/" → "/a/b/d": the same location written one way, so that
// two spellings of one bundle compare equal. Purely textual: symbolic links
// are not followed.
std::string standardizedPath(const std::string& path);

// What the first run needs to do so that the platform keeps its approval:
// run from an Applications folder, as the only running copy, approved, and
// (if the user wants) opened at login. Stateless apart from two defaults
// keys. Main thread only; the file operations and the external tools block.
class Setup {
  public:
    struct Ports {
        Files& files;
        Processes& processes;
        Workspace& workspace;
        Trust& trust;
        LoginItems& login;
        Defaults& defaults;
        SystemLog& log;
    };
    explicit Setup(Ports ports)
        : p_(ports) {}
    explicit Setup(Platform& platform)
        : Setup(Ports{platform.files, platform.processes, platform.workspace, platform.trust,
                      platform.login, platform.defaults, platform.log}) {}

    static constexpr const char* askedLoginKey = "setup.askedLogin";
    static constexpr const char* skipMoveKey = "setup.skipMove";

    // Run from a randomised read-only copy that the platform made of a download.
    bool isTranslocated();
    bool isInApplications();
    // Where the bundle the user launched lies on disk, or nullopt when a
    // translocated copy cannot tell.
    std::optional<std::string> originalLocation();

    // Where the copy went, or the platform's description of the first failure.
    struct Moved {
        std::optional<std::string> destination;
        std::string failure;
    };
    Moved moveToApplications();
    // Ends this process; the copy at `path` opens a second later.
    void relaunch(const std::string& path);
    void takeOverFromOtherCopies();
    // The first step still needed, or nullopt when the setup is complete.
    std::optional<SetupModel::Step> needs();
    void setLogin(bool open);
    // The user keeps the application where it is: the move is not offered again.
    void skipMove();
    void resetOwnPermission();

  private:
    bool flag(const char* key);
    std::string userApplications();

    Ports p_;
};

} // namespace tarnwick
