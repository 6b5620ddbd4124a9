// Statements that describe the simulated world: screens, events, trust,
// resources, the login-item service and the defaults database.
#include "platform/sim/scenario/Scenario.h"

namespace tarnwick::sim {

namespace {

uint32_t screenId(Cursor& c) {
    auto id = c.integer("a screen ID");
    if (id < 0 || id > UINT32_MAX) throw ParseError("a screen ID is an unsigned 32-bit number");
    return static_cast<uint32_t>(id);
}

Size size(const std::string& text) {
    auto comma = text.find(',');
    if (comma == std::string::npos) throw ParseError("expected W,H, found '" + text + "'");
    return {Cursor::parseNumber(text.substr(0, comma), "a width"),
            Cursor::parseNumber(text.substr(comma + 1), "a height")};
}

Action screen(Cursor& c, ParseState&) {
    SimDesktop::Screen s;
    s.id = screenId(c);
    s.name = c.string("the screen's name");
    s.frame = c.rect("the screen's rectangle");
    s.visible = s.frame;
    auto o = c.options({"visible", "notch"}, {"builtin", "noid"});
    if (o.count("visible")) s.visible = Cursor::parseRect(o["visible"], "the visible rectangle");
    if (o.count("notch")) s.notch = size(o["notch"]);
    s.builtin = o.count("builtin");
    s.noid = o.count("noid");
    return [s](Runtime& rt) { rt.desktop.addScreen(s); };
}

Action unplug(Cursor& c, ParseState&) {
    auto id = screenId(c);
    c.end();
    return [id](Runtime& rt) {
        if (!rt.desktop.hasScreen(id))
            throw CheckFailed("expected a screen " + std::to_string(id) + " to unplug, got none");
        rt.desktop.unplug(id);
    };
}

Action primary(Cursor& c, ParseState&) {
    auto id = screenId(c);
    c.end();
    return [id](Runtime& rt) {
        if (!rt.desktop.hasScreen(id))
            throw CheckFailed("expected a screen " + std::to_string(id) + ", got none");
        rt.desktop.makePrimary(id);
    };
}

Action post(Cursor& c, ParseState&) {
    auto e = eventNamed(c.word("an event"));
    c.end();
    return [e](Runtime& rt) { rt.desktop.post(e); };
}

Action mouse(Cursor& c, ParseState&) {
    size(c.word("the pointer location")); // read by the island; nothing else looks at it
    c.end();
    return [](Runtime&) {};
}

Action trust(Cursor& c, ParseState&) {
    bool v = yesNo(c, "trust");
    c.end();
    return [v](Runtime& rt) { rt.desktop.setTrusted(v); };
}

Action privateFunctions(Cursor& c, ParseState&) {
    bool v = yesNo(c, "private");
    c.end();
    return [v](Runtime& rt) { rt.desktop.setPrivateFunctions(v); };
}

Action self(Cursor& c, ParseState&) {
    auto id = c.wordOrString("a bundle identifier");
    c.end();
    return [id](Runtime& rt) { rt.desktop.setOwnBundle(id); };
}

Action resource(Cursor& c, ParseState&) {
    auto name = c.wordOrString("a resource name");
    auto state = c.word("present, missing or broken");
    c.end();
    SimDesktop::Resource r;
    if (state == "present")
        r = SimDesktop::Resource::present;
    else if (state == "missing")
        r = SimDesktop::Resource::missing;
    else if (state == "broken")
        r = SimDesktop::Resource::broken;
    else
        throw ParseError("expected present, missing or broken, found '" + state + "'");
    return [name, r](Runtime& rt) { rt.desktop.setResource(name, r); };
}

Action login(Cursor& c, ParseState&) {
    auto state = c.word("enabled or disabled");
    c.end();
    if (state != "enabled" && state != "disabled")
        throw ParseError("expected enabled or disabled, found '" + state + "'");
    return [on = state == "enabled"](Runtime& rt) { rt.desktop.setLoginEnabled(on); };
}

Action fail(Cursor& c, ParseState&) {
    auto op = c.word("an operation");
    auto error = c.string("the error text");
    c.end();
    if (op != "login") throw ParseError("unknown operation to fail '" + op + "' (login)");
    return [error](Runtime& rt) { rt.desktop.failNextLogin(error); };
}

Action defaults(Cursor& c, ParseState&) {
    auto key = c.wordOrString("a key");
    auto value = c.jsonRest("the value");
    return [key, value](Runtime& rt) { rt.desktop.storeUserDefault(key, value); };
}

Action forget(Cursor& c, ParseState&) {
    auto key = c.wordOrString("a key");
    c.end();
    return [key](Runtime& rt) { rt.desktop.forgetUserDefault(key); };
}

} // namespace

void registerWorldStatements(Registry& r) {
    r.add("screen", {screen});
    r.add("unplug", {unplug});
    r.add("primary", {primary});
    r.add("post", {post});
    r.add("mouse", {mouse});
    r.add("trust", {trust});
    r.add("private", {privateFunctions});
    r.add("self", {self});
    r.add("resource", {resource});
    r.add("login", {login});
    r.add("fail", {fail});
    r.add("defaults", {defaults});
    r.add("forget", {forget});
}

} // namespace tarnwick::sim
