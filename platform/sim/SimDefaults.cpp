#include "platform/sim/SimDefaults.h"

namespace tarnwick::sim {

void SimDefaults::registerDefaults(const std::map<std::string, DefaultsValue>& values) {
    for (const auto& [k, v] : values)
        w_.registered[k] = v;
}

std::optional<DefaultsValue> SimDefaults::object(const std::string& key) {
    if (auto it = w_.user.find(key); it != w_.user.end()) return it->second;
    if (auto it = w_.registered.find(key); it != w_.registered.end()) return it->second;
    return std::nullopt;
}

void SimDefaults::set(const std::string& key, const DefaultsValue& value) {
    w_.user[key] = value;
    w_.transcript.line("defaults", key + " " + formatDefaultsValue(value));
}

void SimDefaults::remove(const std::string& key) {
    w_.user.erase(key);
    w_.transcript.line("defaults", key + " removed");
}

} // namespace tarnwick::sim
