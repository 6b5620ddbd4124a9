#pragma once

#include "ports/Processes.h"
#include "ports/SystemLog.h"

namespace tarnwick {

// Other programs through posix_spawn, our own end through Qt's event loop,
// URLs through the desktop's default handlers (GIO).
//
// The first-run steps name three macOS programs; here they mean:
//   /usr/bin/xattr    clears a download's quarantine flag. Linux has none to
//                     clear: success, nothing runs.
//   /bin/sh -c "sleep 1; /usr/bin/open \"$0\"" PATH
//                     starts the copy at PATH once we have quit. Run as
//                     /bin/sh -c 'sleep 1; exec "$0"' PATH in a session of
//                     its own: the program itself, as `open` has no
//                     counterpart that starts a program file.
//   /usr/bin/tccutil  resets the user's approval of window control. X11 asks
//                     no approval: success, nothing runs.
class PosixProcesses : public Processes {
  public:
    explicit PosixProcesses(SystemLog& log)
        : log_(log) {}

    int32_t ownPid() override;
    std::optional<std::string> run(const std::string& path, const std::vector<std::string>& args,
                                   bool wait) override;
    void terminate(int32_t pid) override;
    void quit() override;
    void open(const std::string& url) override;

  private:
    SystemLog& log_;
};

} // namespace tarnwick
