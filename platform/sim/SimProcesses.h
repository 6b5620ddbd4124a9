#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Processes.h"

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
    std::optional<std::string> run(const std::string& path, const std::vector<std::string>& args,
                                   bool wait) override;
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
