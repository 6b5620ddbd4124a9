#pragma once

#include "base/Observable.h"
#include "displays/Displays.h"
#include "ports/Platform.h"
#include "settings/AppRows.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarnwick {

class Controller;
class Prefs;
class SetupWindow;
class Status;

enum class Tint { none, gray, accent, green, orange };
// "none", "gray", …: how views and transcripts name a tint.
const char* tintName(Tint t);

// What pressing, switching or choosing a control of the form does.
enum class Control {
    none,
    moveAll,
    chooseWindows,
    fixPermission,
    previewConnect,
    previewDisconnect,
    saveLayout,
    restoreLayout,
    onConnect,
    targetDisplay,
    placement,
    moveFullscreen,
    playSounds,
    announce,
    rememberLayouts,
    app,
    launchAtLogin,
    delay,
};

// One thing the settings form shows. The kind says how a view draws it; the
// other fields are what it draws, already decided.
struct FormItem {
    enum class Kind {
        header,     // the application's `icon`, `text` as the title, `detail` under it
        permission, // `symbol` in `tint`, `text` over `detail`
        button,     // `symbol` and `text`; a move button adds `detail` and `trailingSymbol`
        caption,    // a line of secondary text
        status,     // the status line, after `symbol`
        toggle,     // `text`, switched `on`
        segmented,  // the picker `text` with every one of `choices` visible
        popup,      // the picker `text` showing only the `chosen` one of `choices`
        slider,     // `text`, `value` from `minimum` to `maximum` by `step`, read as `detail`
        app,        // a toggle labelled with the application's `icon` and `text`
        value,      // `text`, and `detail` at the trailing end
    };

    Kind kind = Kind::caption;
    Control control = Control::none;
    std::string text;
    std::string detail;
    std::string symbol;
    std::string trailingSymbol;
    std::string icon;
    Tint tint = Tint::none;
    bool prominent = false; // a large, full-width, filled button
    bool enabled = true;
    bool sameRow = false; // laid out beside the item before it
    bool on = false;
    std::vector<std::string> choices;
    size_t chosen = 0;
    double value = 0, minimum = 0, maximum = 0, step = 0;
    uint32_t display = 0; // moveAll: the display's id
    std::string bundle;   // app: the application's bundle identifier

    bool operator==(const FormItem&) const = default;
};

struct FormSection {
    std::string title; // empty for the header and the permission row
    std::vector<FormItem> items;
    std::string footer;

    bool operator==(const FormSection&) const = default;
};

// Everything the settings window shows and what its controls do. It follows
// the preferences, the coordinator's displays and the status line, and tells
// its observers when any of them changes. Two things nobody tells it of it
// reads itself, when the window appears and every two seconds while it stays
// on screen: whether this process may drive other windows (so that the
// permission row turns green soon after the user grants access), and the
// running applications. The latter is kept between reads: listing them
// reads every window on the desktop, and the form is drawn again for every
// status line of a move. Main thread only.
class SettingsView : public Observable {
  public:
    struct Parts {
        Platform& platform;
        Prefs& prefs;
        Controller& controller;
        Status& status;
        SetupWindow& setupWindow;
    };

    static constexpr double tickInterval = 2.0;
    static constexpr double width = 560, height = 780;
    static constexpr double minDelay = 0.5, maxDelay = 6.0, delayStep = 0.5;
    static constexpr const char* largestExternal = "Largest external display";

    // `onScreen`: whether the window is on screen; the reading stops at the
    // first tick that finds it is not. Without it, it never stops.
    explicit SettingsView(Parts parts, std::function<bool()> onScreen = {});
    ~SettingsView();

    // The window is back on screen: reads both now and ticks again.
    void appear();
    // No more reading until the next appear().
    void stop();

    bool trusted() const { return trusted_; }
    // The whole form, top to bottom, as it should look now.
    std::vector<FormSection> form() const;
    // The "Target display" choices after the largest-external one: the
    // external displays in list order, then a stored name not among them, so
    // that a display chosen earlier stays selected while it is unplugged.
    std::vector<std::string> targetChoices() const;
    // As last read, with the excluded list as it is now.
    const std::vector<AppRow>& apps() const { return rows_; }
    std::string version() const;

    // What the user does. Disabled items do nothing.
    void press(const FormItem& item);
    void toggle(const FormItem& item, bool on);
    void choose(const FormItem& item, size_t choice);
    void slide(double seconds);
    // Switching an application on takes every occurrence of it out of the
    // excluded list; off adds it once.
    void setAppIncluded(const std::string& bundle, bool included);

    // "2.0 s", the same in every locale.
    static std::string delayText(double seconds);
    // Where the slider lands for a position the pointer asked for.
    static double snapDelay(double seconds);
    // "2560 × 1440 · external".
    static std::string caption(const Display& d);

  private:
    void startTick();
    // Reads trust and the running applications, and tells of any change.
    void readAll();
    // Each says whether what the form shows changed.
    bool readTrust();
    bool readApps();
    bool mergeApps(std::vector<std::string> excluded);
    void changed() { didChange(); }

    Parts parts_;
    std::function<bool()> onScreen_;
    bool trusted_;
    std::vector<AppRow> running_, rows_;
    std::vector<std::string> mergedExcluded_; // what rows_ was made with
    bool merged_ = false;
    WorkHandle tick_;
    Subscription prefsChanged_, displaysChanged_, statusChanged_;
};

} // namespace tarnwick
