#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Processes.h"

#include <vector>

namespace tarnwick::sim {

// Other programs and this process's end. A started program runs and exits
// at once, so waiting for it takes no virtual time; it changes nothing in
// the world. A terminate request is obeyed at once. When this program ends
// itself the virtual clock stops: nothing after the work under way runs.
class SimProcesses : public Processes {
  public:
    explicit SimProcesses(SimWorld& world)
        : w_(world) {}

    int32_t ownPid() override {
        w_.dispatch.requireMain("Processes::ownPid");
        return SimWorld::ownPid;
    }
    // The first run's errands are the programs that do them on that maker's
    // desktop, written to the transcript as they would run.
    std::optional<std::string> clearDownloadMark(const std::string& path) override {
        return run("/usr/bin/xattr", {"-dr", "com.apple.quarantine", path}, true);
    }
    void forgetApproval(const std::string& identifier) override {
        run("/usr/bin/tccutil", {"reset", "Accessibility", identifier}, true);
    }
    std::optional<std::string> startAfterQuit(const std::string& path) override {
        return run("/bin/sh", {"-c", "sleep 1; /usr/bin/open \"$0\"", path}, false);
    }
    // Starts the program at `path`; it exits at once.
    std::optional<std::string> run(const std::string& path, const std::vector<std::string>& args,
                                   bool wait);
    void terminate(int32_t pid) override;
    void quit() override;
    void open(const std::string& url) override {
        w_.dispatch.requireMain("Processes::open");
        w_.transcript.line("open", url);
    }

  private:
    SimWorld& w_;
};

} // namespace tarnwick::sim
