#pragma once

#include "ports/Files.h"

namespace tarnwick {

// The user's files on a POSIX system, with GIO for what the desktop defines:
// the trash and the names a file browser shows.
class PosixFiles : public Files {
  public:
    std::string homeDirectory() override;
    bool isWritable(const std::string& path) override;
    bool exists(const std::string& path) override;
    std::optional<std::string> createDirectory(const std::string& path) override;
    std::optional<std::string> trash(const std::string& path) override;
    // Fails when `to` exists. The copy is made beside `to` and renamed into
    // place, so a failure halfway leaves nothing at `to`.
    std::optional<std::string> copy(const std::string& from, const std::string& to) override;
    std::string displayName(const std::string& path) override;
};

} // namespace tarnwick
