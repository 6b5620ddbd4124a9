#pragma once

#include "ports/Defaults.h"
#include "ports/SystemLog.h"

#include <mutex>
#include <string>

namespace tarnwick {

// $XDG_CONFIG_HOME, else ~/.config: where a freedesktop program keeps its settings.
std::string xdgConfigHome();

// The defaults database as one JSON document, <directory>/defaults.json.
// The file is read once, at construction; every change rewrites it whole and
// atomically, so a crash leaves either the old or the new document. A file
// that cannot be read as ours is moved aside, never overwritten.
class XdgDefaults : public Defaults {
  public:
    XdgDefaults(std::string directory, SystemLog& log);

    void registerDefaults(const std::map<std::string, DefaultsValue>& values) override;
    std::optional<DefaultsValue> object(const std::string& key) override;
    void set(const std::string& key, const DefaultsValue& value) override;
    void remove(const std::string& key) override;

    // Deeper documents are refused as corrupt: nothing we write nests this
    // far, and a hostile file must not drive the parser arbitrarily deep.
    static constexpr int maxDepth = 64;

  private:
    void load();
    void moveAside(const std::string& reason);
    // Writes the user domain, under mu_; the error's text when it could not.
    std::optional<std::string> write();

    std::string dir_;
    std::string path_;
    SystemLog& log_;
    std::mutex mu_;
    std::map<std::string, DefaultsValue> registered_;
    nlohmann::json user_ = nlohmann::json::object();
    // Set when a file we could not read stays where it was: saving would destroy it.
    bool readOnly_ = false;
};

} // namespace tarnwick
