#pragma once

#include "base/Observable.h"
#include "displays/Displays.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

class Controller;
class Prefs;
class Processes;
class Status;

// One line of the menu-bar menu, as the menu shows it.
struct MenuEntry {
    enum class Kind { button, text, separator, picker };
    // What choosing the entry does.
    enum class Command {
        none,
        openSettings,
        moveAll,
        chooseWindows,
        restoreLayout,
        saveLayout,
        onConnect,
        quit
    };

    Kind kind = Kind::separator;
    // The entry's identity, the same in every rebuild while it is in the menu
    // ("saveLayout", "moveAll:2"): a choice made in a menu as drawn is
    // carried out by it, wherever the entry stands when its turn comes.
    std::string id;
    std::string text; // a button's label, a text line, the picker's title
    bool visible = true;
    Command command = Command::none;
    std::optional<Display> display;   // where moveAll sends the windows
    std::vector<std::string> choices; // the picker's case titles, in case order
    size_t chosen = 0;                // the picker's current case

    bool operator==(const MenuEntry&) const = default;
};

// The menu that drops down from the menu-bar item: the status, the display
// count, the commands and the connect choice. It follows the coordinator,
// the status line and the preferences for as long as it lives, and tells its
// observers after each rebuild; a menu made each time it opens leaves no
// callback behind when it goes.
class MenuModel : public Observable {
  public:
    struct Parts {
        Controller& controller;
        Status& status;
        Prefs& prefs;
        Processes& processes;
        std::function<void()> showSettings;
    };
    explicit MenuModel(Parts parts);

    // Every entry, hidden ones included, top to bottom.
    const std::vector<MenuEntry>& entries() const { return entries_; }

    // Chooses a button; text lines, separators, hidden entries and indexes
    // out of range do nothing.
    void activate(size_t index);
    // The same for the entry with that identity, as the menu is now: nothing
    // when it has gone or is hidden.
    void activate(const std::string& id);
    // Chooses case `choice` of the picker at `index`, or with that identity.
    void choose(size_t index, size_t choice);
    void choose(const std::string& id, size_t choice);

    // "1 display connected", "3 displays connected".
    static std::string displayCount(size_t n);

  private:
    void rebuild();
    std::optional<size_t> find(const std::string& id) const;

    Parts parts_;
    std::vector<MenuEntry> entries_;
    Subscription displaysChanged_, statusChanged_, prefsChanged_;
};

} // namespace tarnwick
