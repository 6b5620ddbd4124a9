// Statements of the island surfaces: what the user does there, checks and dumps.
#include "base/JsonText.h"
#include "island/IslandView.h"
#include "platform/sim/IslandRecorder.h"
#include "platform/sim/SimSurfaces.h"
#include "platform/sim/scenario/Scenario.h"

#include <algorithm>
#include <set>

namespace tarnwick::sim {

namespace {

IslandView viewOf(Runtime& rt, const IslandModel& m) {
    auto& platform = rt.app().platform();
    return IslandView(
        m,
        [&platform](const std::string& text, double size, FontWeight weight) {
            return platform.surfaces.textWidth(text, size, weight);
        },
        platform.screens.builtinWords());
}

std::shared_ptr<IslandModel> currentIsland(Runtime& rt) {
    auto m = rt.app().island().current();
    if (!m) throw CheckFailed("expected an island, got none");
    return m;
}

// The chooser as the user sees it now; its controls exist only there.
std::pair<std::shared_ptr<IslandModel>, IslandView::Chooser> chooserOf(Runtime& rt) {
    auto m = currentIsland(rt);
    auto content = viewOf(rt, *m).content();
    auto* chooser = content ? std::get_if<IslandView::Chooser>(&*content) : nullptr;
    if (!chooser)
        throw CheckFailed("expected the island's chooser, got " +
                          (m->expanded() ? phaseName(m->phase()) : std::string("a tucked island")));
    return {m, *chooser};
}

Action toggle(Cursor& c, ParseState&) {
    const auto n = c.integer("a row number");
    c.end();
    if (n < 1) throw ParseError("rows are counted from 1");
    return [n](Runtime& rt) {
        auto [m, chooser] = chooserOf(rt);
        const auto& rows = chooser.list.rows;
        if (static_cast<size_t>(n) > rows.size())
            throw CheckFailed(
                "expected row " + std::to_string(n) + " of the island's list, got " +
                (rows.empty() ? std::string("none") : std::to_string(rows.size()) + " rows"));
        IslandView::tap(*m, rows[static_cast<size_t>(n) - 1].id);
    };
}

Action selectAll(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        auto [m, chooser] = chooserOf(rt);
        IslandView::selectAllOrNone(*m);
    };
}

Action move(Cursor& c, ParseState&) {
    const auto which = c.word("selected or all");
    c.end();
    if (which != "selected" && which != "all")
        throw ParseError("expected selected or all, found '" + which + "'");
    return [all = which == "all"](Runtime& rt) {
        auto [m, chooser] = chooserOf(rt);
        // A dimmed button takes no press.
        if (!(all ? chooser.moveAll : chooser.moveSelected).enabled) return;
        rt.app().island().move(m, all ? Selection::all : Selection::selected);
    };
}

Action retarget(Cursor& c, ParseState&) {
    const auto name = c.string("a display name");
    c.end();
    return [name](Runtime& rt) {
        auto [m, chooser] = chooserOf(rt);
        for (const auto& d : m->displays())
            if (d.name == name) return rt.app().island().retarget(m, d);
        throw CheckFailed("expected a destination named " + quoted(name) + ", got none");
    };
}

Action close(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        chooserOf(rt);
        rt.app().island().close(Closing::animated);
    };
}

Action expectPhase(Cursor& c, ParseState&) {
    static const std::set<std::string> phases{"none",
                                              "announce(connected)",
                                              "announce(disconnected)",
                                              "loading",
                                              "choosing",
                                              "moving",
                                              "done(ok)",
                                              "done(failed)"};
    const auto want = c.word("an island phase");
    c.end();
    if (!phases.count(want))
        throw ParseError("unknown island phase '" + want +
                         "' (none, announce(connected), announce(disconnected), loading, "
                         "choosing, moving, done(ok), done(failed))");
    return [want](Runtime& rt) {
        auto m = rt.app().island().current();
        const auto got = m ? phaseName(m->phase()) : std::string("none");
        if (got != want) throw CheckFailed("expected island " + want + ", got " + got);
    };
}

std::string yes(bool v) {
    return v ? "yes" : "no";
}

void chooserLines(std::vector<std::string>& out, const IslandView::Chooser& c) {
    auto line = [&](const std::string& s) { out.push_back(s); };
    line("select " + quoted(c.header.selectLabel) +
         " opacity=" + formatNumber(c.header.selectOpacity));
    const auto& d = c.destination;
    using Control = IslandView::Control;
    line(std::string("destination ") + (d.control == Control::pills          ? "pills"
                                        : d.control == Control::compactPills ? "compact"
                                                                             : "menu"));
    for (const auto& p : d.pills)
        line("pill " + quoted(p.label) + (p.selected ? " selected" : ""));
    for (const auto& e : d.entries)
        line("entry " + quoted(e.label) + " " + e.symbol);
    if (c.list.rows.empty())
        line("list empty " + formatNumber(c.list.height));
    else
        line("list " + formatNumber(c.list.height) + " scrolls=" + yes(c.list.scrolls));
    int n = 0;
    for (const auto& r : c.list.rows)
        line("row " + std::to_string(++n) + " " + quoted(r.app) + " " + quoted(r.title) +
             (r.selected ? " ticked" : " unticked") + (r.fullscreen ? " fullscreen" : ""));
    for (const auto* b : {&c.notNow, &c.moveSelected, &c.moveAll})
        line("button " + quoted(b->text) + (b->enabled ? " enabled" : " disabled") +
             (b->prominent ? " prominent" : "") + " opacity=" + formatNumber(b->opacity));
}

// The payloads of `dump island`: the texts, then the readable state.
std::vector<std::string> islandLines(Runtime& rt) {
    std::vector<std::string> out;
    auto line = [&](const std::string& s) { out.push_back(s); };
    auto m = rt.app().island().current();
    if (!m) {
        line("none");
        return out;
    }
    const auto view = viewOf(rt, *m);
    for (const auto& text : view.texts())
        line("text " + quoted(text));
    const auto f = view.frame();
    line("phase " + describePhase(m->phase()));
    line("expanded " + yes(m->expanded()));
    line("width " + formatNumber(f.outerWidth) +
         (f.minHeight ? " minHeight=" + formatNumber(*f.minHeight) : ""));
    // The panel the model is drawn on, where the platform put it.
    for (auto* p : rt.desktop.surfaces().panels())
        if (p->model() == m && p->shown()) line("panel " + formatRect(p->frame()));
    line(f.notched ? "notch " + formatNumber(m->notch().w) + "," + formatNumber(m->notch().h)
                   : std::string("notch none"));
    if (auto* n = std::get_if<NotchShape>(&f.shape))
        line("shape notch top=" + formatNumber(n->top) + " bottom=" + formatNumber(n->bottom));
    else
        line("shape rounded " + formatNumber(std::get<RoundedShape>(f.shape).radius));
    line("target " + quoted(m->target().name));
    auto content = view.content();
    if (!content) return out;
    if (auto* a = std::get_if<IslandView::Announce>(&*content))
        line(std::string("link ") + (a->connected ? "connected" : "disconnected") +
             (a->multiple ? " multiple" : " single"));
    else if (auto* mv = std::get_if<IslandView::Moving>(&*content))
        line("progress " + formatNumber(mv->fraction));
    else if (auto* d = std::get_if<IslandView::Done>(&*content))
        line("result " + d->symbol);
    else if (auto* ch = std::get_if<IslandView::Chooser>(&*content))
        chooserLines(out, *ch);
    return out;
}

Action dumpIsland(Cursor& c, ParseState&) {
    c.end();
    return [](Runtime& rt) {
        for (const auto& payload : islandLines(rt))
            rt.transcript.line("island", payload);
    };
}

// `expect island PHASE`, or `expect island line …` (a line `dump island`
// would print now), or `expect island text "TEXT"` (a text shown now).
Action expectIsland(Cursor& c, ParseState& state) {
    const auto first = c.peekWord();
    if (first != "line" && first != "text") return expectPhase(c, state);
    c.word("line or text");
    std::string want;
    if (first == "text") {
        want = "text " + quoted(c.string("the text"));
        c.end();
    } else {
        // Strings are written back in the transcript's own quoting, so that
        // "\u00b7" and "·" are the same line.
        while (!c.atEnd()) {
            const bool isString = c.peekWord().front() == '"';
            auto token = c.wordOrString("a word of the line");
            want += (want.empty() ? "" : " ") + (isString ? tarnwick::quoted(token) : token);
        }
        if (want.empty()) throw ParseError("missing the line");
    }
    return [want](Runtime& rt) {
        const auto lines = islandLines(rt);
        if (std::find(lines.begin(), lines.end(), want) != lines.end()) return;
        // The closest line of the same kind tells what is there instead.
        const auto kind = want.substr(0, want.find(' '));
        std::string got = "none";
        for (const auto& l : lines)
            if (l.substr(0, l.find(' ')) == kind) {
                got = l;
                break;
            }
        throw CheckFailed("expected island " + want + ", got " + got);
    };
}

} // namespace

void registerIslandStatements(Registry& r) {
    r.add("island toggle", {toggle, StatementKind::afterLaunch});
    r.add("island all", {selectAll, StatementKind::afterLaunch});
    r.add("island move", {move, StatementKind::afterLaunch});
    r.add("island retarget", {retarget, StatementKind::afterLaunch});
    r.add("island close", {close, StatementKind::afterLaunch});
    r.add("expect island", {expectIsland, StatementKind::afterLaunch});
    r.add("dump island", {dumpIsland, StatementKind::afterLaunch});
}

} // namespace tarnwick::sim
