#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <optional>
#include <string>

namespace tarnwick {

// Property-list values are carried as JSON; binary data is a JSON binary value.
using DefaultsValue = nlohmann::json;

// The user-defaults database: a user domain over a registration domain.
// Called from any thread, from several at once: a layout snapshot reads and
// writes its entry in the background while the preferences are written on
// the main thread. Each call is whole on its own, and a value set is what
// the next read answers, on any thread. What is kept must survive a crash
// mid-write.
class Defaults {
  public:
    virtual ~Defaults() = default;
    // Registered values answer reads while the user domain has nothing; never stored.
    virtual void registerDefaults(const std::map<std::string, DefaultsValue>& values) = 0;
    virtual std::optional<DefaultsValue> object(const std::string& key) = 0;
    virtual void set(const std::string& key, const DefaultsValue& value) = 0;
    virtual void remove(const std::string& key) = 0;
};

} // namespace tarnwick
