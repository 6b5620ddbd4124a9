#pragma once

#include "base/Observable.h"
#include "ports/Defaults.h"
#include "ports/LoginItems.h"
#include "ports/SystemLog.h"

#include <array>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

enum class OnConnect { ask, moveAll, nothing };
enum class Placement { keepSize, scale, fill };

template <typename E> struct CaseInfo {
    E value;
    std::string_view raw, title, description;
};

inline constexpr std::array<CaseInfo<OnConnect>, 3> onConnectCases{{
    {OnConnect::ask, "ask", "Let me choose",
     "A panel drops out of the notch so you can pick which windows move, or move them all."},
    {OnConnect::moveAll, "moveAll", "Move everything",
     "Every window moves to the new display on its own, no questions asked."},
    {OnConnect::nothing, "nothing", "Do nothing",
     "Windows stay put. Use the buttons above whenever you want to move them."},
}};

inline constexpr std::array<CaseInfo<Placement>, 3> placementCases{{
    {Placement::keepSize, "keepSize", "Keep size",
     "Windows keep their size and land in the same relative spot on the new display."},
    {Placement::scale, "scale", "Scale to fit",
     "Windows are stretched proportionally to the new display, so a half-width window stays "
     "half-width."},
    {Placement::fill, "fill", "Fill screen", "Every window fills the new display."},
}};

std::string_view rawValue(OnConnect c);
std::string_view rawValue(Placement p);
std::string_view title(OnConnect c);
std::string_view title(Placement p);
std::string_view description(OnConnect c);
std::string_view description(Placement p);
// Exact, case-sensitive match; nullopt for anything else.
std::optional<OnConnect> onConnectFromRaw(std::string_view raw);
std::optional<Placement> placementFromRaw(std::string_view raw);

// Reads of the defaults database with the coercions of property lists:
// numbers and numeric strings read as numbers, "YES"/"true" as true, and so on.
namespace DefaultsRead {
std::optional<std::string> string(const std::optional<DefaultsValue>& v);
double doubleValue(const std::optional<DefaultsValue>& v);
bool boolValue(const std::optional<DefaultsValue>& v);
std::optional<std::vector<std::string>> stringArray(const std::optional<DefaultsValue>& v);
} // namespace DefaultsRead

// The user's choices, written through to the defaults database on every change.
// Written on the main thread only; read from any thread.
class Prefs : public Observable {
  public:
    static constexpr double defaultDelay = 2.0, maxSettleTime = 60.0;

    Prefs(Defaults& d, LoginItems& login, SystemLog& log);

    OnConnect onConnect() const;
    Placement placement() const;
    // As stored: the store neither clamps nor checks it, and the settings
    // window shows it as it is.
    double delay() const;
    // How long the program waits for a new display setup to settle: `delay`
    // between 0 and maxSettleTime seconds, and defaultDelay when what is
    // stored is not a number. Whatever lies in the defaults (typed by hand,
    // written by another program, read back as nan or 1e300) cannot hold a
    // connect back for days nor overflow a timer; any delay the settings
    // window offers is used exactly.
    double settleTime() const;
    std::string targetDisplay() const;
    bool moveFullscreen() const;
    bool rememberLayouts() const;
    bool playSounds() const;
    bool announce() const;
    std::vector<std::string> excluded() const;

    void setOnConnect(OnConnect v);
    void setPlacement(Placement v);
    void setDelay(double v);
    void setTargetDisplay(const std::string& v);
    void setMoveFullscreen(bool v);
    void setRememberLayouts(bool v);
    void setPlaySounds(bool v);
    void setAnnounce(bool v);
    void setExcluded(const std::vector<std::string>& v);

    // Asked of the login-item service every time; never stored.
    bool launchAtLogin() const;
    void setLaunchAtLogin(bool v);

  private:
    template <typename T> T get(const T& field) const {
        std::lock_guard lock(mutex_);
        return field;
    }
    template <typename T> void put(T& field, const T& value, const char* key, DefaultsValue stored);

    Defaults& d_;
    LoginItems& login_;
    SystemLog& log_;
    mutable std::mutex mutex_;
    OnConnect onConnect_;
    Placement placement_;
    double delay_;
    std::string targetDisplay_;
    bool moveFullscreen_;
    bool rememberLayouts_;
    bool playSounds_;
    bool announce_;
    std::vector<std::string> excluded_;
};

} // namespace tarnwick
