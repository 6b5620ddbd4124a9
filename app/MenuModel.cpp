#include "app/MenuModel.h"

#include "controller/Controller.h"
#include "controller/Status.h"
#include "prefs/Prefs.h"

namespace tarnwick {

namespace {

// Named after the group it leads, which keeps it one entry while the rows
// around it come and go.
MenuEntry separator(std::string before, bool visible = true) {
    MenuEntry e;
    e.id = "-" + std::move(before);
    e.visible = visible;
    return e;
}

MenuEntry text(std::string id, std::string t) {
    MenuEntry e;
    e.kind = MenuEntry::Kind::text;
    e.id = std::move(id);
    e.text = std::move(t);
    return e;
}

const char* commandName(MenuEntry::Command c) {
    using C = MenuEntry::Command;
    switch (c) {
    case C::openSettings:
        return "openSettings";
    case C::moveAll:
        return "moveAll";
    case C::chooseWindows:
        return "chooseWindows";
    case C::restoreLayout:
        return "restoreLayout";
    case C::saveLayout:
        return "saveLayout";
    case C::onConnect:
        return "onConnect";
    case C::quit:
        return "quit";
    case C::none:
        break;
    }
    return "none";
}

MenuEntry button(std::string t, MenuEntry::Command command, bool visible = true) {
    MenuEntry e;
    e.kind = MenuEntry::Kind::button;
    e.id = commandName(command);
    e.text = std::move(t);
    e.command = command;
    e.visible = visible;
    return e;
}

} // namespace

MenuModel::MenuModel(Parts parts)
    : parts_(std::move(parts)) {
    rebuild();
    auto changed = [this] {
        rebuild();
        didChange();
    };
    displaysChanged_ = parts_.controller.observe(changed);
    statusChanged_ = parts_.status.observe(changed);
    prefsChanged_ = parts_.prefs.observe(changed);
}

std::string MenuModel::displayCount(size_t n) {
    return std::to_string(n) + " display" + (n == 1 ? "" : "s") + " connected";
}

void MenuModel::rebuild() {
    using C = MenuEntry::Command;
    const auto& displays = parts_.controller.displays();
    // Choosing, restoring and saving are about arrangements across screens;
    // with one screen there is nothing to arrange.
    const bool several = displays.size() >= 2;

    std::vector<MenuEntry> out;
    out.push_back(button("Open Tarnwick\u2026", C::openSettings));
    out.push_back(separator("status"));
    out.push_back(text("status", parts_.status.text()));
    out.push_back(text("displayCount", displayCount(displays.size())));
    out.push_back(separator("moves"));
    for (const auto& d : displays) {
        auto e = button("Move everything to " + d.name, C::moveAll);
        // The display, not its place in the list: a move chosen just before
        // another display arrives still goes where the user said.
        e.id += ":" + std::to_string(d.id);
        e.display = d;
        out.push_back(std::move(e));
    }
    out.push_back(button("Choose windows to move\u2026", C::chooseWindows, several));
    out.push_back(separator("layouts", several));
    out.push_back(button("Restore saved layout", C::restoreLayout, several));
    out.push_back(button("Save current layout", C::saveLayout, several));
    out.push_back(separator("onConnect"));

    MenuEntry picker;
    picker.kind = MenuEntry::Kind::picker;
    picker.id = commandName(C::onConnect);
    picker.text = "When a display connects";
    picker.command = C::onConnect;
    const auto current = parts_.prefs.onConnect();
    for (size_t i = 0; i < onConnectCases.size(); ++i) {
        picker.choices.emplace_back(onConnectCases[i].title);
        if (onConnectCases[i].value == current) picker.chosen = i;
    }
    out.push_back(std::move(picker));
    out.push_back(separator("quit"));
    out.push_back(button("Quit Tarnwick", C::quit));
    entries_ = std::move(out);
}

void MenuModel::activate(size_t index) {
    if (index >= entries_.size()) return;
    // A copy: the command may rebuild the entries under our feet.
    const MenuEntry e = entries_[index];
    if (e.kind != MenuEntry::Kind::button || !e.visible) return;
    auto& ctl = parts_.controller;
    switch (e.command) {
    case MenuEntry::Command::openSettings:
        if (parts_.showSettings) parts_.showSettings();
        break;
    case MenuEntry::Command::moveAll:
        if (e.display) ctl.moveAll(*e.display);
        break;
    case MenuEntry::Command::chooseWindows:
        ctl.chooseWindows();
        break;
    case MenuEntry::Command::restoreLayout:
        ctl.restoreLayout();
        break;
    case MenuEntry::Command::saveLayout:
        ctl.saveLayout();
        break;
    case MenuEntry::Command::quit:
        parts_.processes.quit();
        break;
    case MenuEntry::Command::onConnect:
    case MenuEntry::Command::none:
        break;
    }
}

std::optional<size_t> MenuModel::find(const std::string& id) const {
    for (size_t i = 0; i < entries_.size(); ++i)
        if (entries_[i].id == id) return i;
    return std::nullopt;
}

void MenuModel::activate(const std::string& id) {
    if (auto i = find(id)) activate(*i);
}

void MenuModel::choose(const std::string& id, size_t choice) {
    if (auto i = find(id)) choose(*i, choice);
}

void MenuModel::choose(size_t index, size_t choice) {
    if (index >= entries_.size()) return;
    const auto& e = entries_[index];
    if (e.kind != MenuEntry::Kind::picker || !e.visible ||
        e.command != MenuEntry::Command::onConnect)
        return;
    if (choice >= onConnectCases.size()) return;
    parts_.prefs.setOnConnect(onConnectCases[choice].value);
}

} // namespace tarnwick
