#pragma once

#include <optional>
#include <string>

namespace tarnwick {

// The user's file system, for the first-run move into the applications
// folder. Operations that can fail return the platform's description of the
// failure, nullopt on success. Main thread only; they may block.
class Files {
  public:
    virtual ~Files() = default;
    virtual std::string homeDirectory() = 0;
    virtual bool isWritable(const std::string& path) = 0;
    virtual bool exists(const std::string& path) = 0;
    // Creates the folder and any missing parents.
    virtual std::optional<std::string> createDirectory(const std::string& path) = 0;
    virtual std::optional<std::string> trash(const std::string& path) = 0;
    virtual std::optional<std::string> copy(const std::string& from, const std::string& to) = 0;
    // The name a file browser shows for the item at `path`.
    virtual std::string displayName(const std::string& path) = 0;
};

} // namespace tarnwick
