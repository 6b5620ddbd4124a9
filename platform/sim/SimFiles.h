#pragma once

#include "platform/sim/SimWorld.h"
#include "ports/Files.h"

namespace tarnwick::sim {

// The user's file system as a set of paths. Every change the program asks
// for is transcribed as a `file` line, with `failed "ERROR"` when refused.
// Besides the failures a scenario schedules, it refuses what the platform
// would: writing into a folder the user may not write, copying onto
// something that exists or from something that does not.
class SimFiles : public Files {
  public:
    explicit SimFiles(SimWorld& world)
        : w_(world) {}

    std::string homeDirectory() override {
        w_.dispatch.requireMain("Files::homeDirectory");
        return w_.home;
    }
    bool isWritable(const std::string& path) override {
        w_.dispatch.requireMain("Files::isWritable");
        return w_.isWritable(path);
    }
    bool exists(const std::string& path) override {
        w_.dispatch.requireMain("Files::exists");
        return w_.exists(path);
    }
    std::optional<std::string> createDirectory(const std::string& path) override;
    std::optional<std::string> trash(const std::string& path) override;
    std::optional<std::string> copy(const std::string& from, const std::string& to) override;
    std::string displayName(const std::string& path) override;

  private:
    std::optional<std::string> done(const std::string& what, std::optional<std::string> error);
    SimWorld& w_;
};

} // namespace tarnwick::sim
