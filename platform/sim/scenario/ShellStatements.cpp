// Statements of the shell surfaces: what the user does there, checks and dumps.
#include "base/JsonText.h"
#include "platform/sim/scenario/Scenario.h"

#include <algorithm>
#include <set>

namespace tarnwick::sim {

namespace {

Action reopen(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        auto& app = rt.app();
        auto* settings = app.settingsWindowIfMade();
        const bool visible = (settings && settings->visible()) || app.setupWindow().visible();
        app.shouldHandleReopen(visible);
    };
}

// --- the menu-bar menu

// The menu as it is when the user opens it: made afresh, as the platform
// builds it each time it drops down.
Action menuChoose(Cursor& c, ParseState&) {
    auto text = c.string("the menu item's text");
    std::optional<std::string> choice;
    if (!c.atEnd()) choice = c.string("the picker's choice");
    c.end();
    return [text, choice](Runtime& rt) {
        auto menu = rt.app().makeMenu();
        const auto& entries = menu->entries();
        auto what = std::string(choice ? "a menu picker " : "a menu item ") + quoted(text);
        auto fits = [&](const MenuEntry& e) {
            if (e.text != text) return false;
            if (choice) return e.kind == MenuEntry::Kind::picker;
            return e.kind == MenuEntry::Kind::button || e.kind == MenuEntry::Kind::text;
        };
        bool hidden = false;
        for (size_t i = 0; i < entries.size(); ++i) {
            const auto& e = entries[i];
            if (!fits(e)) continue;
            if (!e.visible) {
                hidden = true;
                continue;
            }
            if (!choice) return menu->activate(i);
            for (size_t n = 0; n < e.choices.size(); ++n)
                if (e.choices[n] == *choice) return menu->choose(i, n);
            throw CheckFailed("expected " + what + " with the choice " + quoted(*choice) +
                              ", got none");
        }
        throw CheckFailed("expected " + what + ", got " + (hidden ? "a hidden one" : "none"));
    };
}

// `expect menu "TEXT"`: an entry with that text is shown (a button, a line
// of text, the picker's title); with "CHOICE", the picker shows it chosen;
// with `absent`, no entry shows that text.
Action expectMenu(Cursor& c, ParseState&) {
    auto text = c.string("the menu item's text");
    std::optional<std::string> choice;
    bool absent = false;
    if (!c.atEnd()) {
        if (c.peekWord() == "absent") {
            c.word("absent");
            absent = true;
        } else {
            choice = c.string("the picker's choice");
        }
    }
    c.end();
    return [text, choice, absent](Runtime& rt) {
        auto menu = rt.app().makeMenu();
        const MenuEntry* found = nullptr;
        for (const auto& e : menu->entries())
            if (e.visible && e.kind != MenuEntry::Kind::separator && e.text == text) found = &e;
        if (absent) {
            if (found) throw CheckFailed("expected no menu item " + quoted(text) + ", got one");
            return;
        }
        if (!found) throw CheckFailed("expected a menu item " + quoted(text) + ", got none");
        if (!choice) return;
        const auto got = found->kind == MenuEntry::Kind::picker
                             ? quoted(found->choices.at(found->chosen))
                             : std::string("no picker");
        if (found->kind != MenuEntry::Kind::picker || found->choices.at(found->chosen) != *choice)
            throw CheckFailed("expected menu " + quoted(text) + " " + quoted(*choice) + ", got " +
                              got);
    };
}

Action dumpMenu(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        auto menu = rt.app().makeMenu();
        for (const auto& e : menu->entries()) {
            if (!e.visible) continue;
            switch (e.kind) {
            case MenuEntry::Kind::button:
                rt.transcript.line("menu", quoted(e.text));
                break;
            case MenuEntry::Kind::text:
                rt.transcript.line("menu", "text " + quoted(e.text));
                break;
            case MenuEntry::Kind::separator:
                rt.transcript.line("menu", "-");
                break;
            case MenuEntry::Kind::picker:
                rt.transcript.line("menu", "picker " + quoted(e.text) + " " +
                                               quoted(e.choices.at(e.chosen)));
                break;
            }
        }
    };
}

// --- the settings window

// The settings window's view model, when the window is on screen.
SettingsView* shownSettings(Runtime& rt) {
    auto* window = rt.app().settingsWindowIfMade();
    return window && window->visible() ? window->view().get() : nullptr;
}

SettingsView& requireSettings(Runtime& rt) {
    auto* view = shownSettings(rt);
    if (!view) throw CheckFailed("expected the settings window shown, got hidden");
    return *view;
}

Action settingsShow(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) { rt.app().settingsWindow().show(); };
}

// A disabled button can be clicked but does nothing, as on screen.
Action settingsPress(Cursor& c, ParseState&) {
    auto text = c.string("the button's text");
    c.end();
    return [text](Runtime& rt) {
        auto& view = requireSettings(rt);
        for (const auto& section : view.form())
            for (const auto& item : section.items)
                if (item.kind == FormItem::Kind::button && item.text == text)
                    return view.press(item);
        throw CheckFailed("expected a settings button " + quoted(text) + ", got none");
    };
}

Action settingsApp(Cursor& c, ParseState&) {
    auto bundle = c.wordOrString("a bundle identifier");
    bool on = true;
    auto state = c.word("on or off");
    if (state == "off")
        on = false;
    else if (state != "on")
        throw ParseError("expected on or off, found '" + state + "'");
    c.end();
    return [bundle, on](Runtime& rt) {
        auto& view = requireSettings(rt);
        for (const auto& section : view.form())
            for (const auto& item : section.items)
                if (item.kind == FormItem::Kind::app && item.bundle == bundle)
                    return view.toggle(item, on);
        throw CheckFailed("expected an app " + quoted(bundle) + " in the settings, got none");
    };
}

std::vector<std::string> settingsTexts(const std::vector<FormSection>& form);

// `expect settings "TEXT" [absent|enabled|disabled|on|off]`: the window
// shows that text, or does not; a button with that text is enabled or
// disabled; a toggle or an application row with that label is on or off.
Action expectSettingsText(Cursor& c) {
    auto text = c.string("a text of the settings window");
    std::string state = c.atEnd() ? "" : c.word("absent, enabled, disabled, on or off");
    static const std::set<std::string> states{"", "absent", "enabled", "disabled", "on", "off"};
    if (!states.count(state))
        throw ParseError("expected absent, enabled, disabled, on or off, found '" + state + "'");
    c.end();
    return [text, state](Runtime& rt) {
        const auto form = requireSettings(rt).form();
        const auto texts = settingsTexts(form);
        const bool shown = std::find(texts.begin(), texts.end(), text) != texts.end();
        const auto what = "settings " + quoted(text);
        if (state == "absent") {
            if (shown) throw CheckFailed("expected no " + what + ", got one");
            return;
        }
        if (!shown) throw CheckFailed("expected " + what + ", got none");
        if (state.empty()) return;
        using K = FormItem::Kind;
        for (const auto& section : form)
            for (const auto& item : section.items) {
                if (item.text != text) continue;
                std::string got;
                if (item.kind == K::button)
                    got = item.enabled ? "enabled" : "disabled";
                else if (item.kind == K::toggle || item.kind == K::app)
                    got = item.on ? "on" : "off";
                else
                    continue;
                if (got != state)
                    throw CheckFailed("expected " + what + " " + state + ", got " + got);
                return;
            }
        throw CheckFailed("expected " + what + " " + state + ", got no control");
    };
}

Action expectSettings(Cursor& c, ParseState&) {
    if (!c.atEnd() && c.peekWord().starts_with("\"")) return expectSettingsText(c);
    auto want = c.word("shown or hidden");
    if (want != "shown" && want != "hidden")
        throw ParseError("expected shown or hidden, found '" + want + "'");
    c.end();
    return [want](Runtime& rt) {
        const char* got = shownSettings(rt) ? "shown" : "hidden";
        if (want != got) throw CheckFailed("expected settings " + want + ", got " + got);
    };
}

// Texts top to bottom, as a reader of the window meets them.
std::vector<std::string> settingsTexts(const std::vector<FormSection>& form) {
    std::vector<std::string> out;
    auto text = [&](const std::string& t) {
        if (!t.empty()) out.push_back(t);
    };
    using K = FormItem::Kind;
    for (const auto& section : form) {
        text(section.title);
        for (const auto& item : section.items) {
            text(item.text);
            switch (item.kind) {
            case K::segmented:
                for (const auto& choice : item.choices)
                    text(choice);
                break;
            case K::popup:
                if (item.chosen < item.choices.size()) text(item.choices[item.chosen]);
                break;
            default:
                text(item.detail);
                break;
            }
        }
        text(section.footer);
    }
    return out;
}

// What the texts leave out: states, symbols, tints, choices.
void settingsStates(Runtime& rt, const SettingsView& view, const std::vector<FormSection>& form) {
    auto line = [&](const std::string& payload) { rt.transcript.line("settings", payload); };
    line(std::string("trusted ") + (view.trusted() ? "yes" : "no"));
    using K = FormItem::Kind;
    for (const auto& section : form)
        for (const auto& item : section.items) {
            const auto name = quoted(item.text);
            std::string looks;
            if (!item.symbol.empty()) looks += " symbol=" + item.symbol;
            if (item.tint != Tint::none) looks += std::string(" tint=") + tintName(item.tint);
            switch (item.kind) {
            case K::permission:
                line("permission" + looks);
                break;
            case K::button:
                line("button " + name + looks + (item.enabled ? "" : " disabled"));
                break;
            case K::toggle:
                line("toggle " + name + (item.on ? " on" : " off"));
                break;
            case K::segmented:
            case K::popup: {
                std::string choices;
                for (const auto& choice : item.choices)
                    choices += " " + quoted(choice);
                line("picker " + name + " " + quoted(item.choices.at(item.chosen)) + " of" +
                     choices);
                break;
            }
            case K::slider:
                line("slider " + name + " " + formatNumber(item.value));
                break;
            case K::app:
                line("app " + quoted(item.bundle) + " " + name + (item.on ? " on" : " off") +
                     (item.icon.empty() ? " noicon" : " icon=" + quoted(item.icon)));
                break;
            default:
                break;
            }
        }
}

Action dumpSettings(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        auto* view = shownSettings(rt);
        if (!view) return rt.transcript.line("settings", "hidden");
        const auto form = view->form();
        for (const auto& text : settingsTexts(form))
            rt.transcript.line("settings", "text " + quoted(text));
        settingsStates(rt, *view, form);
    };
}

} // namespace

void registerShellStatements(Registry& r) {
    r.add("reopen", {reopen, StatementKind::afterLaunch});
    r.add("menu", {menuChoose, StatementKind::afterLaunch});
    r.add("expect menu", {expectMenu, StatementKind::afterLaunch});
    r.add("dump menu", {dumpMenu, StatementKind::afterLaunch});
    r.add("settings show", {settingsShow, StatementKind::afterLaunch});
    r.add("settings app", {settingsApp, StatementKind::afterLaunch});
    r.add("settings", {settingsPress, StatementKind::afterLaunch});
    r.add("expect settings", {expectSettings, StatementKind::afterLaunch});
    r.add("dump settings", {dumpSettings, StatementKind::afterLaunch});
}

} // namespace tarnwick::sim
