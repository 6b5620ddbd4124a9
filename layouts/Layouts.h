#pragma once

#include "platform/Defaults.h"
#include "platform/Screens.h"
#include "windows/WindowMover.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace tarnwick {

// One window of a saved layout. The title is kept only as its SHA-256 digest.
struct SavedWindow {
    std::string bundle;
    std::string title;
    double x = 0, y = 0, w = 0, h = 0;
    bool operator==(const SavedWindow&) const = default;
};

using LayoutStore = std::map<std::string, std::vector<SavedWindow>>;

struct RestoreResult {
    int64_t restored = 0;
    std::vector<AXWindow> unmatched;
};

// The last arrangement of windows for every display setup the user has had,
// kept in one defaults entry, and putting it back.
class Layouts {
  public:
    static constexpr const char* storeKey = "layouts.v2";

    Layouts(Defaults& defaults, Screens& screens, WindowMover& mover)
        : defaults_(defaults)
        , screens_(screens)
        , mover_(mover) {}

    struct SaveResult {
        bool stored = true;  // false: the store was left as it was
        int64_t leftOut = 0; // windows whose frame could not be kept
        // What the log says of this save, since the status always reads as saved.
        std::vector<std::string> logLines() const;
    };
    SaveResult save();
    LayoutStore load();
    RestoreResult restore(const std::vector<AXWindow>& windows);

    // 64 lowercase hexadecimal digits of SHA-256 over the UTF-8 bytes.
    static std::string titleDigest(const std::string& title);
    // Compact UTF-8 JSON; nullopt when a frame is not a finite number.
    static std::optional<std::string> encode(const LayoutStore& store);
    static std::optional<LayoutStore> decode(const std::string& text);

  private:
    Defaults& defaults_;
    Screens& screens_;
    WindowMover& mover_;
    // Saves overlap (the periodic snapshot and the command): each takes a
    // ticket before it lists windows, and a setup's layout is only replaced by
    // a snapshot taken later than the one already written.
    std::mutex mutex_;
    uint64_t nextTicket_ = 0;
    std::map<std::string, uint64_t> writtenTicket_;
};

} // namespace tarnwick
