#pragma once

#include "ports/Defaults.h"
#include "ports/Screens.h"
#include "windows/WindowMover.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace tarnwick {

// The display a saved window stood on: its identity in the setup's key
// ("name@WxH") and where it stood in the desktop when the layout was saved.
struct SavedScreen {
    std::string name;
    double x = 0, y = 0, w = 0, h = 0;
    bool operator==(const SavedScreen&) const = default;
};

// One window of a saved layout. The title is kept only as its SHA-256 digest.
// Layouts stored before displays were remembered have no screen: their frames
// are put back as they were written. A maximized window's frame is the one it
// had maximized, which puts it on the right display before it is maximized.
struct SavedWindow {
    std::string bundle;
    std::string title;
    double x = 0, y = 0, w = 0, h = 0;
    std::optional<SavedScreen> screen;
    bool maximized = false;
    bool operator==(const SavedWindow&) const = default;
};

using LayoutStore = std::map<std::string, std::vector<SavedWindow>>;

struct RestoreResult {
    int64_t restored = 0;
    std::vector<AppWindow> unmatched;
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

    // The periodic snapshot defers to a layout that is waiting to be put
    // back; a save by hand always writes.
    enum class Saving { byHand, periodic };

    struct SaveResult {
        bool stored = true;        // false: the store was left as it was
        int64_t leftOut = 0;       // windows whose frame could not be kept
        bool setupChanged = false; // the displays changed while windows were listed
        bool held = false;         // a periodic snapshot left a held layout alone
        // What the log says of this save, since the status always reads as saved.
        std::vector<std::string> logLines() const;
    };
    SaveResult save(Saving how = Saving::byHand);
    LayoutStore load();
    RestoreResult restore(const std::vector<AppWindow>& windows);

    // A display setup has just arrived. When it has a saved layout, periodic
    // snapshots leave that layout alone until a restore of the setup has run
    // or the user has moved a window since the arrival. Main thread; returns
    // the arrival's number for `arrivedWith`, 0 when nothing is held.
    uint64_t arrived(const std::string& key);
    // The arrangement at the arrival, listed off the main thread.
    void arrivedWith(uint64_t arrival, const std::vector<AppWindow>& windows);

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
    using Placed = std::tuple<std::string, std::string, double, double, double, double>;
    struct Hold {
        uint64_t arrival = 0;
        std::string key;
        std::optional<std::set<Placed>> seen; // until listed, nothing can tell a move
    };
    std::optional<Hold> hold_;
    uint64_t arrivals_ = 0;
};

} // namespace tarnwick
