#include "prefs/Prefs.h"

#include "base/JsonText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <strings.h>

namespace tarnwick {

namespace {

template <typename E, size_t N>
const CaseInfo<E>& info(const std::array<CaseInfo<E>, N>& cases, E value) {
    for (const auto& c : cases)
        if (c.value == value) return c;
    return cases[0];
}

template <typename E, size_t N>
std::optional<E> fromRaw(const std::array<CaseInfo<E>, N>& cases, std::string_view raw) {
    for (const auto& c : cases)
        if (c.raw == raw) return c.value;
    return std::nullopt;
}

// Whether a decimal too large or too small for a double is the large kind,
// that is at least 1: its first significant digit lies left of the point
// once the exponent is applied.
bool overflows(std::string_view number) {
    const auto e = std::min(number.find_first_of("eE"), number.size());
    const auto mantissa = number.substr(0, e);
    const auto point = std::min(mantissa.find('.'), mantissa.size());
    const auto first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
    // Places left of the point for the first significant digit, negative right of it.
    const auto place = first < point ? static_cast<int64_t>(point - first)
                                     : -static_cast<int64_t>(first - point - 1);
    if (e == number.size()) return place > 0;
    auto exponent = number.substr(e + 1);
    const bool negative = !exponent.empty() && exponent[0] == '-';
    if (!exponent.empty() && (exponent[0] == '-' || exponent[0] == '+')) exponent.remove_prefix(1);
    int64_t value = 0;
    if (std::from_chars(exponent.data(), exponent.data() + exponent.size(), value).ec !=
        std::errc())
        return !negative; // an exponent beyond 64 bits decides alone
    // place + exponent > 0, without overflowing for an exponent near 2^63.
    return negative ? value < place : value > -place;
}

// The number a string starts with, as property lists read it: leading white
// space skipped, the rest after the number ignored, 0 when there is none.
// strtod would take the decimal separator from the C locale, which a toolkit
// sets from the environment, so "2.5" would read as 2 in a German session.
double leadingNumber(std::string_view s) {
    const auto start = s.find_first_not_of(" \t\n\v\f\r");
    if (start == std::string_view::npos) return 0;
    s.remove_prefix(start);
    if (s[0] == '+') {
        s.remove_prefix(1);
        if (!s.empty() && s[0] == '-') return 0;
    }
    double v = 0;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), v);
    if (ec == std::errc::result_out_of_range) {
        const double huge = overflows(s.substr(0, static_cast<size_t>(end - s.data())))
                                ? std::numeric_limits<double>::infinity()
                                : 0.0;
        return s[0] == '-' ? -huge : huge;
    }
    return ec == std::errc() ? v : 0;
}

} // namespace

std::string_view rawValue(OnConnect c) {
    return info(onConnectCases, c).raw;
}
std::string_view rawValue(Placement p) {
    return info(placementCases, p).raw;
}
std::string_view title(OnConnect c) {
    return info(onConnectCases, c).title;
}
std::string_view title(Placement p) {
    return info(placementCases, p).title;
}
std::string_view description(OnConnect c) {
    return info(onConnectCases, c).description;
}
std::string_view description(Placement p) {
    return info(placementCases, p).description;
}
std::optional<OnConnect> onConnectFromRaw(std::string_view raw) {
    return fromRaw(onConnectCases, raw);
}
std::optional<Placement> placementFromRaw(std::string_view raw) {
    return fromRaw(placementCases, raw);
}

namespace DefaultsRead {

std::optional<std::string> string(const std::optional<DefaultsValue>& v) {
    if (!v) return std::nullopt;
    if (v->is_string()) return v->get<std::string>();
    if (v->is_boolean()) return std::string(v->get<bool>() ? "1" : "0");
    if (v->is_number()) return formatNumber(v->get<double>());
    return std::nullopt;
}

double doubleValue(const std::optional<DefaultsValue>& v) {
    if (!v) return 0;
    if (v->is_boolean()) return v->get<bool>() ? 1 : 0;
    if (v->is_number()) return v->get<double>();
    if (v->is_string()) return leadingNumber(v->get<std::string>());
    return 0;
}

bool boolValue(const std::optional<DefaultsValue>& v) {
    if (!v) return false;
    if (v->is_boolean()) return v->get<bool>();
    if (v->is_number()) return v->get<double>() != 0;
    if (v->is_string()) {
        const auto s = v->get<std::string>();
        if (strcasecmp(s.c_str(), "yes") == 0 || strcasecmp(s.c_str(), "true") == 0) return true;
        return std::atoll(s.c_str()) != 0;
    }
    return false;
}

std::optional<std::vector<std::string>> stringArray(const std::optional<DefaultsValue>& v) {
    if (!v || !v->is_array()) return std::nullopt;
    std::vector<std::string> out;
    for (const auto& e : *v) {
        if (!e.is_string()) return std::nullopt;
        out.push_back(e.get<std::string>());
    }
    return out;
}

} // namespace DefaultsRead

Prefs::Prefs(Defaults& d, LoginItems& login, SystemLog& log)
    : d_(d)
    , login_(login)
    , log_(log) {
    d_.registerDefaults({
        {"onConnect", "ask"},
        {"placement", "keepSize"},
        {"delay", defaultDelay},
        {"targetDisplay", ""},
        {"moveFullscreen", true},
        {"rememberLayouts", true},
        {"playSounds", true},
        {"announce", true},
        {"excluded", DefaultsValue::array()},
    });
    using namespace DefaultsRead;
    onConnect_ =
        onConnectFromRaw(string(d_.object("onConnect")).value_or("")).value_or(OnConnect::ask);
    placement_ =
        placementFromRaw(string(d_.object("placement")).value_or("")).value_or(Placement::keepSize);
    delay_ = doubleValue(d_.object("delay"));
    targetDisplay_ = string(d_.object("targetDisplay")).value_or("");
    moveFullscreen_ = boolValue(d_.object("moveFullscreen"));
    rememberLayouts_ = boolValue(d_.object("rememberLayouts"));
    playSounds_ = boolValue(d_.object("playSounds"));
    announce_ = boolValue(d_.object("announce"));
    excluded_ = stringArray(d_.object("excluded")).value_or(std::vector<std::string>{});
}

OnConnect Prefs::onConnect() const {
    return get(onConnect_);
}
Placement Prefs::placement() const {
    return get(placement_);
}
double Prefs::delay() const {
    return get(delay_);
}
double Prefs::settleTime() const {
    const double stored = delay();
    if (std::isnan(stored)) return defaultDelay;
    return std::clamp(stored, 0.0, maxSettleTime);
}
std::string Prefs::targetDisplay() const {
    return get(targetDisplay_);
}
bool Prefs::moveFullscreen() const {
    return get(moveFullscreen_);
}
bool Prefs::rememberLayouts() const {
    return get(rememberLayouts_);
}
bool Prefs::playSounds() const {
    return get(playSounds_);
}
bool Prefs::announce() const {
    return get(announce_);
}
std::vector<std::string> Prefs::excluded() const {
    return get(excluded_);
}

template <typename T>
void Prefs::put(T& field, const T& value, const char* key, DefaultsValue stored) {
    {
        std::lock_guard lock(mutex_);
        field = value;
    }
    d_.set(key, stored);
    didChange();
}

void Prefs::setOnConnect(OnConnect v) {
    put(onConnect_, v, "onConnect", std::string(rawValue(v)));
}
void Prefs::setPlacement(Placement v) {
    put(placement_, v, "placement", std::string(rawValue(v)));
}
void Prefs::setDelay(double v) {
    put(delay_, v, "delay", v);
}
void Prefs::setTargetDisplay(const std::string& v) {
    put(targetDisplay_, v, "targetDisplay", v);
}
void Prefs::setMoveFullscreen(bool v) {
    put(moveFullscreen_, v, "moveFullscreen", v);
}
void Prefs::setRememberLayouts(bool v) {
    put(rememberLayouts_, v, "rememberLayouts", v);
}
void Prefs::setPlaySounds(bool v) {
    put(playSounds_, v, "playSounds", v);
}
void Prefs::setAnnounce(bool v) {
    put(announce_, v, "announce", v);
}
void Prefs::setExcluded(const std::vector<std::string>& v) {
    put(excluded_, v, "excluded", DefaultsValue(v));
}

bool Prefs::launchAtLogin() const {
    return login_.enabled();
}

void Prefs::setLaunchAtLogin(bool v) {
    auto error = v ? login_.registerApp() : login_.unregisterApp();
    if (error) log_.line("Launch at login failed: " + *error);
    didChange();
}

} // namespace tarnwick
