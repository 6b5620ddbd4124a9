#pragma once

#include "ports/Processes.h"
#include "ports/SystemLog.h"

#include <vector>

namespace tarnwick {

// Other programs through posix_spawn, our own end through Qt's event loop,
// URLs through the desktop's default handlers (GIO).
//
// Downloads carry no mark here and X11 records no approval, so those errands
// succeed doing nothing. A program started after we quit runs as
// /bin/sh -c 'sleep 1; exec "$0"' PATH in a session of its own.
class PosixProcesses : public Processes {
  public:
    explicit PosixProcesses(SystemLog& log)
        : log_(log) {}

    int32_t ownPid() override;
    std::optional<std::string> clearDownloadMark(const std::string&) override {
        return std::nullopt;
    }
    void forgetApproval(const std::string&) override {}
    std::optional<std::string> startAfterQuit(const std::string& path) override;
    // Starts the program at `path`; with `wait`, blocks until it exits (its
    // exit status is not looked at). The failure's description when it
    // could not be started.
    std::optional<std::string> run(const std::string& path, const std::vector<std::string>& args,
                                   bool wait);
    void terminate(int32_t pid) override;
    void quit() override;
    void open(const std::string& url) override;

  private:
    SystemLog& log_;
};

} // namespace tarnwick
