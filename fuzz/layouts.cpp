// The stored layouts, as whatever bytes another version, another program or
// a damaged disk left under "layouts.v2": a restore and then a save on a
// desktop with two screens and a few windows.
//
// Properties:
// - what decodes encodes, and the encoding decodes to the same store;
// - the save leaves every other setup that was readable before unchanged,
//   writes something readable, and holds this setup's windows.
#include "fuzz/Check.h"
#include "platform/sim/SimEngine.h"

#include <cstddef>
#include <cstdint>
#include <string>

using namespace tarnwick;
using tarnwick::fuzz::require;

namespace {

struct World : sim::SimEngine {
    World() {
        desk.addScreen({1, "Built-in", {0, 0, 1440, 900}, {0, 0, 1440, 875}, true});
        desk.addScreen({2, "Desk", {1440, -540, 2560, 1440}, {1440, -540, 2560, 1415}});
        desk.addApp({10, "Notes", "com.example.notes"});
        desk.addApp({11, "Mail", "com.example.mail"});
        desk.addApp({12, "Tool", std::nullopt});
        window(10, "Groceries", {100, 125, 800, 600});
        window(10, "Recipes", {1600, 100, 700, 500});
        window(11, "Inbox", {1500, -400, 1200, 900});
        window(11, "Movie", {0, 0, 1440, 900}, true);
        window(12, "", {20, 40, 300, 200});
    }
    void window(int32_t pid, const std::string& title, Rect frame, bool fullscreen = false) {
        desk.addWindow({.pid = pid, .title = title, .frame = frame, .fullscreen = fullscreen},
                       false, false);
    }
    std::optional<std::string> stored() const {
        auto it = desk.userDefaults().find(Layouts::storeKey);
        if (it == desk.userDefaults().end() || !it->second.is_binary()) return std::nullopt;
        const auto& bytes = it->second.get_binary();
        return std::string(bytes.begin(), bytes.end());
    }
};

void roundTrips(const std::string& text) {
    const auto store = Layouts::decode(text);
    if (!store) return;
    const auto again = Layouts::encode(*store);
    require(again.has_value(), "a decoded store cannot be encoded");
    const auto back = Layouts::decode(*again);
    require(back.has_value(), "an encoded store does not decode: " + *again);
    require(*back == *store, "decode(encode(decode(x))) differs from decode(x): " + *again);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    roundTrips(text);

    World w;
    w.desk.storeUserDefault(Layouts::storeKey, DefaultsValue::binary({data, data + size}));
    const auto before = Layouts::decode(text);
    const auto key = Displays::configKey(Displays::all(w.desk));

    w.offMain([&] { w.layouts.restore(w.mover.windows()); });
    w.offMain([&] { w.layouts.save(); });
    size_t listed = 0;
    w.offMain([&] {
        for (const auto& window : w.mover.windows())
            listed += window.fullscreen ? 0 : 1;
    });

    const auto after = w.stored();
    require(after.has_value(), "the save left no binary value under the store's key");
    const auto decoded = Layouts::decode(*after);
    require(decoded.has_value(), "the save wrote a store that does not decode: " + *after);
    require(decoded->count(key) == 1, "the save did not write this setup's layout: " + *after);
    // Every window listed but the full-screen one is remembered.
    require(decoded->at(key).size() == listed,
            "the save kept " + std::to_string(decoded->at(key).size()) + " windows of " +
                std::to_string(listed) + ": " + *after);
    if (before) {
        for (const auto& [k, windows] : *before) {
            if (k == key) continue;
            auto it = decoded->find(k);
            require(it != decoded->end(), "the save dropped the setup \"" + k + "\"");
            require(it->second == windows, "the save changed the setup \"" + k + "\"");
        }
        require(decoded->size() == before->size() + (before->count(key) ? 0 : 1),
                "the save added setups that were not there");
    } else {
        require(decoded->size() == 1, "the save kept parts of an unreadable store");
    }
    return 0;
}
