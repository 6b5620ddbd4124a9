// Statements that describe the simulated world: screens, events, trust,
// this program's bundle and the files around it, resources, the login-item
// service and the defaults database.
#include "platform/sim/scenario/Scenario.h"

namespace tarnwick::sim {

namespace {

uint32_t screenId(Cursor& c) {
    return static_cast<uint32_t>(c.integer("a screen ID", 0, UINT32_MAX));
}

// No real screen has no area; an empty one would still be chosen as a
// destination and swallow the windows moved there.
Rect area(const std::string& text, const char* what) {
    auto r = Cursor::parseRect(text, what);
    if (!(r.w > 0 && r.h > 0))
        throw ParseError(std::string(what) + " needs a width and a height above 0, found '" + text +
                         "'");
    return r;
}

// Text that reaches the transcript as written (a display's name in the
// status line, an error in the log) must stay on its line.
std::string oneLine(std::string text, const char* what) {
    for (unsigned char ch : text)
        if (ch < 0x20 || ch == 0x7f)
            throw ParseError(std::string(what) + " holds a control character");
    return text;
}

Size size(const std::string& text) {
    auto comma = text.find(',');
    if (comma == std::string::npos) throw ParseError("expected W,H, found '" + text + "'");
    return {Cursor::parseNumber(text.substr(0, comma), "a width"),
            Cursor::parseNumber(text.substr(comma + 1), "a height")};
}

Point point(const std::string& text) {
    auto comma = text.find(',');
    if (comma == std::string::npos) throw ParseError("expected X,Y, found '" + text + "'");
    return {Cursor::parseNumber(text.substr(0, comma), "an x coordinate"),
            Cursor::parseNumber(text.substr(comma + 1), "a y coordinate")};
}

Action screen(Cursor& c, ParseState&) {
    SimControl::Screen s;
    s.id = screenId(c);
    s.name = oneLine(c.string("the screen's name"), "the screen's name");
    s.frame = area(c.word("the screen's rectangle"), "the screen's rectangle");
    s.visible = s.frame;
    auto o = c.options({"visible", "notch"}, {"builtin", "noid"});
    if (o.count("visible")) s.visible = area(o["visible"], "the visible rectangle");
    if (o.count("notch")) {
        s.notch = size(o["notch"]);
        if (!(s.notch->w > 0 && s.notch->h > 0))
            throw ParseError("a notch needs a width and a height above 0, found '" + o["notch"] +
                             "'");
    }
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
    auto at = point(c.word("the pointer location"));
    c.end();
    return [at](Runtime& rt) { rt.desktop.setMouse(at); };
}

Action trust(Cursor& c, ParseState&) {
    bool v = yesNo(c, "trust");
    c.end();
    return [v](Runtime& rt) { rt.desktop.setTrusted(v); };
}

Action probe(Cursor& c, ParseState&) {
    auto answer = c.word("ok or refused");
    c.end();
    if (answer != "ok" && answer != "refused")
        throw ParseError("expected ok or refused, found '" + answer + "'");
    return [ok = answer == "ok"](Runtime& rt) { rt.desktop.setProbeAnswers(ok); };
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

Action copy(Cursor& c, ParseState&) {
    auto pid = processId(c);
    c.end();
    return [pid](Runtime& rt) { rt.desktop.addCopy(pid); };
}

std::string path(Cursor& c, const char* what) {
    auto p = c.wordOrString(what);
    if (p.empty() || p.front() != '/') throw ParseError(std::string(what) + " must be absolute");
    return p;
}

Action bundle(Cursor& c, ParseState&) {
    auto p = path(c, "the bundle's path");
    c.end();
    return [p](Runtime& rt) { rt.desktop.setBundlePath(p); };
}

Action original(Cursor& c, ParseState&) {
    std::optional<std::string> p;
    if (c.peekWord() == "none")
        c.word("none");
    else
        p = path(c, "the original path");
    c.end();
    return [p](Runtime& rt) { rt.desktop.setOriginal(p); };
}

Action home(Cursor& c, ParseState&) {
    auto p = path(c, "the home directory");
    c.end();
    return [p](Runtime& rt) { rt.desktop.setHome(p); };
}

Action writable(Cursor& c, ParseState&) {
    auto p = path(c, "a folder");
    bool v = yesNo(c, "writable");
    c.end();
    return [p, v](Runtime& rt) { rt.desktop.setWritable(p, v); };
}

Action exists(Cursor& c, ParseState&) {
    auto p = path(c, "a path");
    c.end();
    return [p](Runtime& rt) { rt.desktop.addPath(p); };
}

Action resource(Cursor& c, ParseState&) {
    auto name = c.wordOrString("a resource name");
    auto state = c.word("present, missing or broken");
    c.end();
    SimControl::Resource r;
    if (state == "present")
        r = SimControl::Resource::present;
    else if (state == "missing")
        r = SimControl::Resource::missing;
    else if (state == "broken")
        r = SimControl::Resource::broken;
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
    using Op = SimControl::Operation;
    static const std::map<std::string, Op> operations{
        {"mkdir", Op::mkdir}, {"trash", Op::trash}, {"copy", Op::copy},
        {"exec", Op::exec},   {"login", Op::login},
    };
    auto name = c.word("an operation");
    auto error = oneLine(c.string("the error text"), "the error text");
    c.end();
    auto it = operations.find(name);
    if (it == operations.end())
        throw ParseError("unknown operation to fail '" + name +
                         "' (mkdir, trash, copy, exec, login)");
    return [op = it->second, error](Runtime& rt) { rt.desktop.failNext(op, error); };
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
    r.add("probe", {probe});
    r.add("private", {privateFunctions});
    r.add("self", {self});
    r.add("copy", {copy});
    r.add("bundle", {bundle});
    r.add("original", {original});
    r.add("home", {home});
    r.add("writable", {writable});
    r.add("exists", {exists});
    r.add("resource", {resource});
    r.add("login", {login});
    r.add("fail", {fail});
    r.add("defaults", {defaults});
    r.add("forget", {forget});
}

} // namespace tarnwick::sim
