#include "settings/SettingsView.h"

#include "base/JsonText.h"
#include "controller/Controller.h"
#include "controller/Status.h"
#include "prefs/Prefs.h"
#include "setup/SetupWindow.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tarnwick {

const char* tintName(Tint t) {
    switch (t) {
    case Tint::gray:
        return "gray";
    case Tint::accent:
        return "accent";
    case Tint::green:
        return "green";
    case Tint::orange:
        return "orange";
    case Tint::none:
        break;
    }
    return "none";
}

namespace {

FormItem item(FormItem::Kind kind, std::string text, Control control = Control::none) {
    FormItem i;
    i.kind = kind;
    i.text = std::move(text);
    i.control = control;
    return i;
}

FormItem secondary(std::string text) {
    return item(FormItem::Kind::caption, std::move(text));
}

FormItem button(std::string text, Control control, std::string symbol = {}) {
    auto i = item(FormItem::Kind::button, std::move(text), control);
    i.symbol = std::move(symbol);
    return i;
}

FormItem switchItem(std::string text, Control control, bool on) {
    auto i = item(FormItem::Kind::toggle, std::move(text), control);
    i.on = on;
    return i;
}

template <typename E, size_t N>
FormItem segmented(std::string text, Control control, const std::array<CaseInfo<E>, N>& cases,
                   E current) {
    auto i = item(FormItem::Kind::segmented, std::move(text), control);
    for (size_t n = 0; n < N; ++n) {
        i.choices.emplace_back(cases[n].title);
        if (cases[n].value == current) i.chosen = n;
    }
    return i;
}

} // namespace

SettingsView::SettingsView(Parts parts, std::function<bool()> onScreen)
    : parts_(parts)
    , onScreen_(std::move(onScreen))
    , trusted_(parts.platform.trust.isProcessTrusted()) {
    readApps();
    startTick();
    prefsChanged_ = parts_.prefs.observe([this] {
        if (auto excluded = parts_.prefs.excluded(); excluded != mergedExcluded_)
            mergeApps(std::move(excluded));
        changed();
    });
    displaysChanged_ = parts_.controller.observe([this] { changed(); });
    statusChanged_ = parts_.status.observe([this] { changed(); });
}

SettingsView::~SettingsView() {
    stop();
}

void SettingsView::appear() {
    readAll();
    startTick();
}

void SettingsView::stop() {
    if (tick_) std::exchange(tick_, nullptr)->cancel();
}

void SettingsView::startTick() {
    // Granting access happens in the platform's own settings, and
    // applications start and quit, without a word to us: asking again now
    // and then is the only way to notice.
    if (!tick_)
        tick_ = parts_.platform.dispatch.every(tickInterval, [this] {
            if (onScreen_ && !onScreen_()) return stop();
            readAll();
        });
}

void SettingsView::readAll() {
    const bool trust = readTrust();
    if (readApps() || trust) didChange();
}

bool SettingsView::readTrust() {
    const bool now = parts_.platform.trust.isProcessTrusted();
    if (now == trusted_) return false;
    trusted_ = now;
    return true;
}

bool SettingsView::readApps() {
    auto now = runningAppRows(parts_.platform.workspace);
    if (merged_ && now == running_) return false;
    running_ = std::move(now);
    return mergeApps(parts_.prefs.excluded());
}

bool SettingsView::mergeApps(std::vector<std::string> excluded) {
    auto rows = appRows(running_, parts_.platform.workspace, parts_.platform.files, excluded);
    mergedExcluded_ = std::move(excluded);
    merged_ = true;
    if (rows == rows_) return false;
    rows_ = std::move(rows);
    return true;
}

std::string SettingsView::delayText(double seconds) {
    // printf's "%.1f" would follow the C locale's decimal separator.
    char buf[64];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, seconds, std::chars_format::fixed, 1);
    if (ec != std::errc()) return "\u2013 s";
    return std::string(buf, end) + " s";
}

double SettingsView::snapDelay(double seconds) {
    if (std::isnan(seconds)) return minDelay;
    const double clamped = std::clamp(seconds, minDelay, maxDelay);
    return minDelay + std::round((clamped - minDelay) / delayStep) * delayStep;
}

std::string SettingsView::caption(const Display& d) {
    return Displays::sizeText(d) + " \u00b7 " + (d.isBuiltin ? "built-in" : "external");
}

std::vector<std::string> SettingsView::targetChoices() const {
    std::vector<std::string> names;
    for (const auto& d : parts_.controller.displays())
        if (!d.isBuiltin) names.push_back(d.name);
    const auto stored = parts_.prefs.targetDisplay();
    if (!stored.empty() && std::find(names.begin(), names.end(), stored) == names.end())
        names.push_back(stored);
    return names;
}

std::string SettingsView::version() const {
    return parts_.platform.workspace.version().value_or("dev");
}

std::vector<FormSection> SettingsView::form() const {
    using K = FormItem::Kind;
    auto& prefs = parts_.prefs;
    auto& workspace = parts_.platform.workspace;
    const auto& displays = parts_.controller.displays();
    const bool several = displays.size() >= 2;
    std::vector<FormSection> out;

    auto header = item(K::header, "Tarnwick");
    header.detail = "Plug in a display and choose what moves over.";
    header.icon = workspace.icon(workspace.programPath());
    out.push_back({"", {header}, ""});

    auto permission = item(K::permission, trusted_ ? "Accessibility access granted"
                                                   : "Accessibility access needed");
    permission.detail = trusted_ ? "Tarnwick can move windows of other apps."
                                 : "Enable Tarnwick under Privacy & Security \u203a Accessibility.";
    permission.symbol = trusted_ ? "checkmark.circle.fill" : "exclamationmark.triangle.fill";
    permission.tint = trusted_ ? Tint::green : Tint::orange;
    FormSection access{"", {permission}, ""};
    if (!trusted_) {
        auto fix = button("Fix this", Control::fixPermission);
        fix.sameRow = true;
        access.items.push_back(fix);
    }
    out.push_back(std::move(access));

    FormSection move{"Press to move", {}, ""};
    for (const auto& d : displays) {
        auto b = button("Move everything to " + d.name, Control::moveAll,
                        d.isBuiltin ? "laptopcomputer" : "display");
        b.detail = caption(d);
        b.trailingSymbol = "arrow.right.circle.fill";
        b.tint = d.isBuiltin ? Tint::gray : Tint::accent;
        b.prominent = true;
        b.display = d.id;
        move.items.push_back(std::move(b));
    }
    if (several) {
        auto choose =
            button("Choose which windows to move\u2026", Control::chooseWindows, "checklist");
        choose.prominent = true;
        move.items.push_back(std::move(choose));
    } else {
        move.items.push_back(
            secondary("Connect a second display to move windows between screens."));
    }
    auto status = item(K::status, parts_.controller.status());
    status.symbol = "info.circle";
    move.items.push_back(std::move(status));
    out.push_back(std::move(move));

    FormSection connect{"When a display connects", {}, ""};
    connect.items.push_back(
        segmented("Action", Control::onConnect, onConnectCases, prefs.onConnect()));
    connect.items.push_back(secondary(std::string(description(prefs.onConnect()))));
    auto target = item(K::popup, "Target display", Control::targetDisplay);
    target.choices.push_back(largestExternal);
    const auto stored = prefs.targetDisplay();
    for (const auto& name : targetChoices()) {
        if (name == stored) target.chosen = target.choices.size();
        target.choices.push_back(name);
    }
    connect.items.push_back(std::move(target));
    connect.items.push_back(
        segmented("Placement", Control::placement, placementCases, prefs.placement()));
    connect.items.push_back(secondary(std::string(description(prefs.placement()))));
    connect.items.push_back(switchItem("Also move fullscreen windows", Control::moveFullscreen,
                                       prefs.moveFullscreen()));
    connect.items.push_back(secondary("Fullscreen windows on another display leave fullscreen, "
                                      "move, then go fullscreen again. Ones already on the target "
                                      "are left alone."));
    auto slider = item(K::slider, "Wait for display to settle", Control::delay);
    const double delay = prefs.delay();
    slider.value = std::isnan(delay) ? minDelay : std::clamp(delay, minDelay, maxDelay);
    slider.minimum = minDelay;
    slider.maximum = maxDelay;
    slider.step = delayStep;
    slider.detail = delayText(delay);
    connect.items.push_back(std::move(slider));
    out.push_back(std::move(connect));

    FormSection feedback{"Sound & animation", {}, ""};
    feedback.items.push_back(switchItem("Play a chime when a display connects or disconnects",
                                        Control::playSounds, prefs.playSounds()));
    feedback.items.push_back(switchItem("Show the connect and disconnect animation",
                                        Control::announce, prefs.announce()));
    feedback.items.push_back(button("Preview connect", Control::previewConnect, "cable.connector"));
    auto previewOff =
        button("Preview disconnect", Control::previewDisconnect, "cable.connector.slash");
    previewOff.sameRow = true;
    feedback.items.push_back(std::move(previewOff));
    out.push_back(std::move(feedback));

    FormSection memory{"Layout memory", {}, ""};
    memory.items.push_back(switchItem("Remember my layout and restore it on reconnect",
                                      Control::rememberLayouts, prefs.rememberLayouts()));
    memory.items.push_back(
        secondary("Your window arrangement is snapshotted every 30 seconds while "
                  "more than one display is connected. When that display setup "
                  "comes back, windows return to exactly where they were."));
    auto save = button("Save layout now", Control::saveLayout);
    auto restore = button("Restore layout", Control::restoreLayout);
    save.enabled = restore.enabled = several;
    restore.sameRow = true;
    memory.items.push_back(std::move(save));
    memory.items.push_back(std::move(restore));
    out.push_back(std::move(memory));

    FormSection apps{"Apps to move",
                     {},
                     "Unchecked apps are left alone. Apps that aren't running now stay in the "
                     "list until you check them again."};
    const auto excluded = prefs.excluded();
    for (const auto& row : this->apps()) {
        auto a = item(K::app, row.name, Control::app);
        a.icon = row.icon;
        a.bundle = row.bundle;
        a.on = std::find(excluded.begin(), excluded.end(), row.bundle) == excluded.end();
        apps.items.push_back(std::move(a));
    }
    out.push_back(std::move(apps));

    FormSection general{"General", {}, ""};
    general.items.push_back(
        switchItem("Launch at login", Control::launchAtLogin, prefs.launchAtLogin()));
    auto v = item(K::value, "Version");
    v.detail = version();
    general.items.push_back(std::move(v));
    out.push_back(std::move(general));
    return out;
}

void SettingsView::press(const FormItem& item) {
    if (!item.enabled || item.kind != FormItem::Kind::button) return;
    auto& ctl = parts_.controller;
    switch (item.control) {
    case Control::moveAll: {
        // The display may have gone since the form was drawn.
        const auto& displays = ctl.displays();
        auto it = std::find_if(displays.begin(), displays.end(),
                               [&](const Display& d) { return d.id == item.display; });
        if (it != displays.end()) ctl.moveAll(Display(*it));
        break;
    }
    case Control::chooseWindows:
        ctl.chooseWindows();
        break;
    case Control::fixPermission:
        parts_.setupWindow.show(SetupModel::Step::permission);
        break;
    case Control::previewConnect:
        ctl.preview(true);
        break;
    case Control::previewDisconnect:
        ctl.preview(false);
        break;
    case Control::saveLayout:
        if (ctl.displays().size() >= 2) ctl.saveLayout();
        break;
    case Control::restoreLayout:
        if (ctl.displays().size() >= 2) ctl.restoreLayout();
        break;
    default:
        break;
    }
}

void SettingsView::toggle(const FormItem& item, bool on) {
    if (!item.enabled) return;
    auto& prefs = parts_.prefs;
    switch (item.control) {
    case Control::moveFullscreen:
        prefs.setMoveFullscreen(on);
        break;
    case Control::playSounds:
        prefs.setPlaySounds(on);
        break;
    case Control::announce:
        prefs.setAnnounce(on);
        break;
    case Control::rememberLayouts:
        prefs.setRememberLayouts(on);
        break;
    case Control::launchAtLogin:
        prefs.setLaunchAtLogin(on);
        break;
    case Control::app:
        setAppIncluded(item.bundle, on);
        break;
    default:
        break;
    }
}

void SettingsView::choose(const FormItem& item, size_t choice) {
    if (!item.enabled || choice >= item.choices.size()) return;
    auto& prefs = parts_.prefs;
    switch (item.control) {
    case Control::onConnect:
        if (choice < onConnectCases.size()) prefs.setOnConnect(onConnectCases[choice].value);
        break;
    case Control::placement:
        if (choice < placementCases.size()) prefs.setPlacement(placementCases[choice].value);
        break;
    case Control::targetDisplay:
        // The first entry stands for "no preference": the largest external display.
        prefs.setTargetDisplay(choice == 0 ? std::string() : item.choices[choice]);
        break;
    default:
        break;
    }
}

void SettingsView::slide(double seconds) {
    parts_.prefs.setDelay(snapDelay(seconds));
}

void SettingsView::setAppIncluded(const std::string& bundle, bool included) {
    auto list = parts_.prefs.excluded();
    if (included) {
        std::erase(list, bundle);
        parts_.prefs.setExcluded(list);
    } else if (std::find(list.begin(), list.end(), bundle) == list.end()) {
        list.push_back(bundle);
        parts_.prefs.setExcluded(list);
    }
}

} // namespace tarnwick
