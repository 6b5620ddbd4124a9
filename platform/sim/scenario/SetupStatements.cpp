// Statements of the setup surfaces: what the user does there, checks and dumps.
#include "base/JsonText.h"
#include "platform/sim/SimSurfaces.h"
#include "platform/sim/scenario/Scenario.h"

namespace tarnwick::sim {

namespace {

using Step = SetupModel::Step;

// The view of the setup window the user sees, or null when none is on screen.
SetupView* shownSetup(Runtime& rt) {
    auto& w = rt.app().setupWindow();
    return w.visible() ? w.view().get() : nullptr;
}

SetupView& requireSetup(Runtime& rt) {
    auto* view = shownSetup(rt);
    if (!view) throw CheckFailed("expected the setup window, got none");
    return *view;
}

Action press(Cursor& c, ParseState&) {
    auto label = c.string("a button's text");
    c.end();
    return [label](Runtime& rt) {
        auto& view = requireSetup(rt);
        if (view.press(label)) return;
        std::string shown;
        for (const auto& b : view.card().buttons)
            shown += (shown.empty() ? "" : ", ") + quoted(b.label);
        throw CheckFailed("expected a setup button " + quoted(label) + ", got " +
                          (shown.empty() ? std::string("none") : shown));
    };
}

// The window's own close button: it hides the window and nothing else.
Action closeBox(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        requireSetup(rt);
        auto* window = rt.app().setupWindow().window();
        if (auto* sim = dynamic_cast<SimWindow*>(window))
            sim->closeBox();
        else
            window->close();
    };
}

Action expectStep(Cursor& c, ParseState&) {
    auto want = c.word("a setup step or none");
    c.end();
    if (want != "none" && want != "move" && want != "permission" && want != "login" &&
        want != "done")
        throw ParseError("expected move, permission, login, done or none, found '" + want + "'");
    return [want](Runtime& rt) {
        auto* view = shownSetup(rt);
        const std::string got = view ? rawValue(view->model()->step()) : "none";
        if (got != want) throw CheckFailed("expected setup " + want + ", got " + got);
    };
}

Action dump(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        auto* view = shownSetup(rt);
        auto line = [&](const std::string& payload) { rt.transcript.line("setup", payload); };
        if (!view) return line("none");
        for (const auto& t : view->texts())
            line("text " + quoted(t));
        const auto& m = *view->model();
        line(std::string("step ") + rawValue(m.step()));
        for (const auto& r : view->checklist())
            line("row " + quoted(r.title) + " " + rowStateName(r.state) + " symbol=" + r.symbol +
                 " tint=" + colourName(r.symbolColour) +
                 (r.weight == FontWeight::semibold ? " semibold" : ""));
        const auto card = view->card();
        if (card.waiting) line("spinner");
        for (const auto& b : card.buttons)
            line("button " + quoted(b.label) + (b.isDefault ? " default" : ""));
        line(std::string("asked ") + (m.asked() ? "yes" : "no"));
        line(std::string("trusted ") + (m.trusted() ? "yes" : "no"));
    };
}

} // namespace

void registerSetupStatements(Registry& r) {
    r.add("setup closebox", {closeBox, StatementKind::afterLaunch});
    r.add("setup", {press, StatementKind::afterLaunch});
    r.add("expect setup", {expectStep, StatementKind::afterLaunch});
    r.add("dump setup", {dump, StatementKind::afterLaunch});
}

} // namespace tarnwick::sim
