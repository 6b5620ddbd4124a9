// Statements of the user and the program: launching, waiting, preferences,
// commands, and the checks and dumps of the coordinator's state.
#include "base/JsonText.h"
#include "platform/sim/scenario/Scenario.h"

namespace tarnwick::sim {

namespace {

Action launch(Cursor& c, ParseState& state) {
    if (state.launched) throw ParseError("the program is already launched");
    state.launched = true;
    std::vector<std::string> given;
    while (!c.atEnd())
        given.push_back(c.wordOrString("an argument"));
    return [given](Runtime& rt) {
        // The program path first, inside the bundle wherever it lies now.
        std::vector<std::string> args{rt.desktop.world().bundlePath + "/Contents/MacOS/" +
                                      SimWorld::ownName};
        args.insert(args.end(), given.begin(), given.end());
        rt.launch(args);
    };
}

// Assigns a field of the preferences as the settings window would.
Action set(Cursor& c, ParseState&) {
    auto field = c.word("a preference field");
    auto v = c.jsonRest("the value");
    auto expectType = [&](bool ok, const char* what) {
        if (!ok) throw ParseError("'" + field + "' takes " + what + ", not " + compactJson(v));
    };
    if (field == "onConnect") {
        expectType(v.is_string(), "a string");
        auto e = onConnectFromRaw(v.get<std::string>());
        if (!e)
            throw ParseError("unknown onConnect value " + compactJson(v) +
                             " (ask, moveAll, nothing)");
        return [e = *e](Runtime& rt) { rt.app().prefs().setOnConnect(e); };
    }
    if (field == "placement") {
        expectType(v.is_string(), "a string");
        auto e = placementFromRaw(v.get<std::string>());
        if (!e)
            throw ParseError("unknown placement value " + compactJson(v) +
                             " (keepSize, scale, fill)");
        return [e = *e](Runtime& rt) { rt.app().prefs().setPlacement(e); };
    }
    if (field == "delay") {
        expectType(v.is_number(), "a number");
        return [d = v.get<double>()](Runtime& rt) { rt.app().prefs().setDelay(d); };
    }
    if (field == "targetDisplay") {
        expectType(v.is_string(), "a string");
        return [s = v.get<std::string>()](Runtime& rt) { rt.app().prefs().setTargetDisplay(s); };
    }
    if (field == "excluded") {
        bool ok = v.is_array();
        for (const auto& e : v)
            ok = ok && e.is_string();
        expectType(ok, "an array of strings");
        return [list = v.get<std::vector<std::string>>()](Runtime& rt) {
            rt.app().prefs().setExcluded(list);
        };
    }
    using Setter = void (Prefs::*)(bool);
    static const std::map<std::string, Setter> flags{
        {"moveFullscreen", &Prefs::setMoveFullscreen},
        {"rememberLayouts", &Prefs::setRememberLayouts},
        {"playSounds", &Prefs::setPlaySounds},
        {"announce", &Prefs::setAnnounce},
        {"launchAtLogin", &Prefs::setLaunchAtLogin},
    };
    auto it = flags.find(field);
    if (it == flags.end()) throw ParseError("unknown preference field '" + field + "'");
    expectType(v.is_boolean(), "true or false");
    return [setter = it->second, b = v.get<bool>()](Runtime& rt) { (rt.app().prefs().*setter)(b); };
}

Action command(Cursor& c, ParseState&) {
    auto name = c.word("a command");
    if (name == "moveAll") {
        auto display = c.string("a display name");
        c.end();
        return [display](Runtime& rt) {
            auto& ctl = rt.app().controller();
            for (const auto& d : ctl.displays())
                if (d.name == display) return ctl.moveAll(d);
            throw CheckFailed("expected a display named " + quoted(display) + ", got none");
        };
    }
    if (name == "preview") {
        auto which = c.word("connect or disconnect");
        c.end();
        if (which != "connect" && which != "disconnect")
            throw ParseError("expected connect or disconnect, found '" + which + "'");
        return [on = which == "connect"](Runtime& rt) { rt.app().controller().preview(on); };
    }
    c.end();
    using Command = void (Controller::*)();
    static const std::map<std::string, Command> commands{
        {"chooseWindows", &Controller::chooseWindows},
        {"saveLayout", &Controller::saveLayout},
        {"restoreLayout", &Controller::restoreLayout},
    };
    auto it = commands.find(name);
    if (it == commands.end())
        throw ParseError("unknown command '" + name +
                         "' (moveAll, chooseWindows, saveLayout, restoreLayout, preview)");
    return [cmd = it->second](Runtime& rt) { (rt.app().controller().*cmd)(); };
}

Action expectStatus(Cursor& c, ParseState&) {
    auto text = c.string("the status text");
    c.end();
    return [text](Runtime& rt) {
        const auto& now = rt.app().controller().status();
        if (now != text)
            throw CheckFailed("expected status " + quoted(text) + ", got " + quoted(now));
    };
}

Action expectDefaults(Cursor& c, ParseState&) {
    auto key = c.wordOrString("a key");
    std::optional<nlohmann::json> want;
    if (c.peekWord() == "absent") {
        c.word("absent");
        c.end();
    } else {
        want = c.jsonRest("the value");
    }
    return [key, want](Runtime& rt) {
        const auto& user = rt.desktop.userDefaults();
        auto it = user.find(key);
        auto got = it == user.end() ? std::string("absent") : formatDefaultsValue(it->second);
        bool holds = want ? it != user.end() && it->second == *want : it == user.end();
        if (!holds)
            throw CheckFailed("expected defaults " + bareOrQuoted(key) + " " +
                              (want ? formatDefaultsValue(*want) : "absent") + ", got " + got);
    };
}

Action dumpDisplays(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        for (const auto& d : rt.instant([&] { return Displays::all(rt.desktop.screens()); }))
            rt.transcript.line("display", std::to_string(d.id) + " " + quoted(d.name) + " " +
                                              formatRect(d.frame) +
                                              " visible=" + formatRect(d.visible) +
                                              (d.isBuiltin ? " builtin" : " external"));
    };
}

Action dumpPrefs(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        const auto& p = rt.app().prefs();
        auto line = [&](const char* field, const nlohmann::json& v) {
            rt.transcript.line("pref", std::string(field) + " " + compactJson(v));
        };
        line("onConnect", std::string(rawValue(p.onConnect())));
        line("placement", std::string(rawValue(p.placement())));
        line("delay", p.delay());
        line("targetDisplay", p.targetDisplay());
        line("moveFullscreen", p.moveFullscreen());
        line("rememberLayouts", p.rememberLayouts());
        line("playSounds", p.playSounds());
        line("announce", p.announce());
        line("excluded", p.excluded());
        line("launchAtLogin", p.launchAtLogin());
    };
}

Action dumpDefaults(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        for (const auto& [key, v] : rt.desktop.userDefaults())
            rt.transcript.line("stored", bareOrQuoted(key) + " " + formatDefaultsValue(v));
    };
}

Action shot(Cursor& c, ParseState&) {
    auto name = c.wordOrString("a picture name");
    c.end();
    // The name becomes part of a file name inside the pictures' folder.
    if (name.empty() || name.front() == '.' || name.find('/') != std::string::npos ||
        name.find('\0') != std::string::npos || name.size() > 100)
        throw ParseError("a picture name is a plain file name (no \"/\", not starting with \".\")");
    return [name](Runtime& rt) {
        if (rt.shoot) rt.shoot(name);
    };
}

} // namespace

void registerAppStatements(Registry& r) {
    r.add("launch", {launch});
    r.add("wait", {nullptr}); // handled by the player: it moves the clock
    r.add("set", {set, StatementKind::afterLaunch});
    r.add("do", {command, StatementKind::afterLaunch});
    r.add("expect status", {expectStatus, StatementKind::afterLaunch});
    r.add("expect defaults", {expectDefaults});
    r.add("dump displays", {dumpDisplays});
    r.add("dump prefs", {dumpPrefs, StatementKind::afterLaunch});
    r.add("dump defaults", {dumpDefaults});
    r.add("shot", {shot});
}

} // namespace tarnwick::sim
