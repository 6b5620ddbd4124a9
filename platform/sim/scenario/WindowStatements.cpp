// Statements about other applications and their windows.
#include "base/JsonText.h"
#include "platform/sim/scenario/Scenario.h"

#include <algorithm>

namespace tarnwick::sim {

namespace {

// A saved title is its digest; anything else found under the layouts key
// (another version's data, a hand edit) is quoted, so that it cannot pass
// for a digest or break the line.
std::string digestOrQuoted(const std::string& s) {
    const bool digest = s.size() == 64 && std::all_of(s.begin(), s.end(), [](char c) {
                            return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
                        });
    return digest ? s : quoted(s);
}

std::string ref(int32_t pid, const std::string& title) {
    return std::to_string(pid) + " " + quoted(title);
}

SimControl::Window& windowOf(Runtime& rt, int32_t pid, const std::string& title) {
    auto* w = rt.desktop.findWindow(pid, title);
    if (!w) throw CheckFailed("expected a window " + ref(pid, title) + ", got none");
    return *w;
}

std::optional<double> seconds(const std::string& text, const char* what) {
    if (text == "never") return std::nullopt;
    double v = Cursor::parseNumber(text, what);
    if (v < 0) throw ParseError(std::string(what) + " cannot be negative");
    // It is added to the virtual clock, which the waits may take that far.
    if (v > maxClockSeconds)
        throw ParseError(std::string(what) + " may not pass " +
                         std::to_string(static_cast<int64_t>(maxClockSeconds)) + " seconds");
    return v;
}

Action app(Cursor& c, ParseState&) {
    SimControl::App a;
    a.pid = processId(c);
    a.name = c.string("the application's name");
    auto o = c.options({"bundle", "policy"}, {"slow"});
    if (o.count("bundle")) a.bundle = o["bundle"];
    if (o.count("policy")) {
        const auto& p = o["policy"];
        if (p == "regular")
            a.policy = AppKind::regular;
        else if (p == "accessory")
            a.policy = AppKind::accessory;
        else if (p == "prohibited")
            a.policy = AppKind::background;
        else
            throw ParseError("unknown policy '" + p + "' (regular, accessory, prohibited)");
    }
    a.slow = o.count("slow");
    return [a](Runtime& rt) { rt.desktop.addApp(a); };
}

Action window(Cursor& c, ParseState&) {
    SimControl::Window w;
    w.pid = processId(c);
    w.title = c.string("the window's title");
    w.frame = c.rect("the window's rectangle");
    auto o = c.options({"subrole", "element", "number", "layer", "listed", "enter", "leave"},
                       {"fullscreen", "minimized", "notitle", "unlisted"});
    w.fullscreen = o.count("fullscreen");
    w.minimized = o.count("minimized");
    w.notitle = o.count("notitle");
    w.unlisted = o.count("unlisted");
    if (o.count("subrole"))
        w.subrole = o["subrole"] == "none" ? std::nullopt : std::optional(o["subrole"]);
    if (o.count("element"))
        w.element = Cursor::parseUnsigned(o["element"], "an element identifier");
    if (o.count("number"))
        w.number = Cursor::parseInteger(o["number"], "a window number", INT64_MIN, INT64_MAX);
    if (o.count("layer"))
        w.layer = Cursor::parseInteger(o["layer"], "a layer", INT64_MIN, INT64_MAX);
    if (o.count("listed")) {
        auto r = Cursor::parseRect("0,0," + o["listed"], "the listed size W,H");
        w.listed = Size{r.w, r.h};
    }
    if (o.count("enter")) w.enter = seconds(o["enter"], "enter");
    if (o.count("leave")) w.leave = seconds(o["leave"], "leave");
    bool element = o.count("element"), number = o.count("number");
    return [w, element, number](Runtime& rt) {
        if (!rt.desktop.hasApp(w.pid))
            throw CheckFailed("expected an application " + std::to_string(w.pid) + ", got none");
        rt.desktop.addWindow(w, element, number);
    };
}

Action move(Cursor& c, ParseState&) {
    auto p = processId(c);
    auto title = c.string("the window's title");
    auto frame = c.rect("the new rectangle");
    c.end();
    return [=](Runtime& rt) { rt.desktop.moveByHand(windowOf(rt, p, title), frame); };
}

Action close(Cursor& c, ParseState&) {
    auto p = processId(c);
    auto title = c.string("the window's title");
    c.end();
    return [=](Runtime& rt) { rt.desktop.closeWindow(windowOf(rt, p, title)); };
}

Action quit(Cursor& c, ParseState&) {
    auto p = processId(c);
    c.end();
    return [p](Runtime& rt) {
        if (!rt.desktop.hasProcess(p))
            throw CheckFailed("expected an application " + std::to_string(p) + ", got none");
        rt.desktop.quitApp(p);
    };
}

Action expectFrame(Cursor& c, ParseState&) {
    auto p = processId(c);
    auto title = c.string("the window's title");
    auto frame = c.rect("the expected rectangle");
    c.end();
    return [=](Runtime& rt) {
        auto& w = windowOf(rt, p, title);
        if (!(w.frame == frame))
            throw CheckFailed("expected frame " + ref(p, title) + " " + formatRect(frame) +
                              ", got " + formatRect(w.frame));
    };
}

Action expectFullscreen(Cursor& c, ParseState&) {
    auto p = processId(c);
    auto title = c.string("the window's title");
    bool on = yesNo(c, "full screen");
    c.end();
    return [=](Runtime& rt) {
        auto& w = windowOf(rt, p, title);
        if (w.fullscreen != on)
            throw CheckFailed("expected fullscreen " + ref(p, title) + (on ? " yes" : " no") +
                              ", got " + (w.fullscreen ? "yes" : "no"));
    };
}

Action dumpWindows(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        auto windows = rt.instant([&] { return rt.app().mover().windows(); });
        for (const auto& w : windows)
            rt.transcript.line("window", ref(w.app->pid, w.title) + " " + formatRect(w.frame) +
                                             (w.fullscreen ? " fullscreen" : ""));
    };
}

Action dumpLayouts(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        for (const auto& [key, windows] : rt.app().layouts().load()) {
            if (windows.empty()) rt.transcript.line("layout", quoted(key) + " empty");
            for (const auto& w : windows)
                rt.transcript.line("layout", quoted(key) + " " + quoted(w.bundle) + " " +
                                                 digestOrQuoted(w.title) + " " +
                                                 formatRect({w.x, w.y, w.w, w.h}));
        }
    };
}

} // namespace

void registerWindowStatements(Registry& r) {
    r.add("app", {app});
    r.add("window", {window});
    r.add("move", {move});
    r.add("close", {close});
    r.add("quit", {quit});
    r.add("expect frame", {expectFrame});
    r.add("expect fullscreen", {expectFullscreen});
    r.add("dump windows", {dumpWindows, StatementKind::afterLaunch});
    r.add("dump layouts", {dumpLayouts, StatementKind::afterLaunch});
}

} // namespace tarnwick::sim
