#include "island/IslandView.h"

#include <algorithm>

namespace tarnwick {

namespace {

// The destination row, in points. A pill is its label between an 11-point
// inset on each side, after a 14-point symbol and a gap of 6; pills stand 6
// apart, and the row starts with "Move to" and a gap of 6.
constexpr double pillInset = 11;
constexpr double pillSymbol = 14;
constexpr double pillGap = 6;
constexpr double pillSpacing = 6;
constexpr double captionGap = 6;
constexpr double pillFont = 11;
const char* const moveTo = "Move to";

// UTF-8 text split into code points, so that a cut never splits a character.
std::vector<std::string> codePoints(const std::string& s) {
    std::vector<std::string> out;
    for (size_t i = 0; i < s.size();) {
        size_t n = 1;
        const auto c = static_cast<unsigned char>(s[i]);
        if (c >= 0xF0)
            n = 4;
        else if (c >= 0xE0)
            n = 3;
        else if (c >= 0xC0)
            n = 2;
        n = std::min(n, s.size() - i);
        out.push_back(s.substr(i, n));
        i += n;
    }
    return out;
}

std::string joined(const std::vector<std::string>& parts, size_t from, size_t to) {
    std::string s;
    for (size_t i = from; i < to; ++i)
        s += parts[i];
    return s;
}

} // namespace

IslandView::IslandView(const IslandModel& m, Measure measure, BuiltinWords words)
    : m_(m)
    , measure_(std::move(measure))
    , words_(std::move(words)) {}

IslandView::Frame IslandView::frame() const {
    Frame f;
    f.notched = m_.notch().h > 0;
    const bool announcing = std::holds_alternative<IslandModel::Announce>(m_.phase());
    if (m_.expanded())
        f.width = announcing ? announceWidth : chooserWidth;
    else
        f.width = f.notched ? m_.notch().w : 126;
    if (!m_.expanded() && !f.notched) f.minHeight = 34;
    f.earPadding = f.notched ? ear : 0;
    f.outerWidth = f.width + 2 * f.earPadding;
    f.topSpace = f.notched ? m_.notch().h : 14;
    f.shape = islandShape(f.notched, ear, m_.expanded());
    f.shadowOpacity = m_.expanded() ? 0.45 : 0;
    return f;
}

std::optional<IslandView::Content> IslandView::content() const {
    if (!m_.expanded()) return std::nullopt;
    const auto& phase = m_.phase();
    if (auto* a = std::get_if<IslandModel::Announce>(&phase))
        return Announce{a->connected, m_.subjects().size() > 1, 130,
                        m_.subjectName() + (a->connected ? " connected" : " disconnected"),
                        announceDetail(a->connected)};
    if (std::holds_alternative<IslandModel::Loading>(phase))
        return Loading{"Finding windows\u2026"};
    if (auto* mv = std::get_if<IslandModel::Moving>(&phase))
        return Moving{mv->text, std::clamp(mv->fraction, 0.0, 1.0)};
    if (auto* d = std::get_if<IslandModel::Done>(&phase))
        return Done{d->ok ? "checkmark.circle.fill" : "exclamationmark.triangle.fill", d->ok,
                    d->text};
    return chooser();
}

std::string IslandView::announceDetail(bool connected) const {
    if (connected) {
        const auto& s = m_.subjects();
        if (s.size() == 1) return Displays::sizeText(s.front());
        std::string names;
        for (const auto& d : s)
            names += (names.empty() ? "" : " \u00b7 ") + d.name;
        return names;
    }
    const auto& r = m_.remaining();
    if (std::any_of(r.begin(), r.end(), [](const Display& d) { return !d.isBuiltin; }))
        return "Windows moved to your other screens";
    if (!r.empty()) return "Windows are back on " + words_.yours;
    return "";
}

std::string IslandView::label(const Display& d, bool compact) const {
    if (!d.isBuiltin) return d.name;
    return compact ? words_.computer : words_.screen;
}

std::string IslandView::symbol(const Display& d) {
    return d.isBuiltin ? "laptopcomputer" : "display";
}

IslandView::Chooser IslandView::chooser() const {
    Chooser c;
    const auto n = m_.items().size();
    c.header.symbol = symbol(m_.target());
    c.header.title = m_.subjects().empty() ? "Move windows" : m_.subjectName() + " connected";
    c.header.subtitle =
        m_.alreadyThere() < 1
            ? "Choose what moves"
            : "Choose what moves \u00b7 " + std::to_string(m_.alreadyThere()) + " already there";
    c.header.selectLabel = m_.allSelected() ? "Select none" : "Select all";
    c.header.selectOpacity = n == 0 ? 0 : 1;
    c.destination = destination();

    for (const auto& item : m_.items()) {
        const auto& app = item.window.app;
        Row r;
        r.id = item.id;
        r.icon = app ? app->icon : "";
        if (app) r.app = app->name.value_or(app->identifier.value_or(""));
        r.title = item.window.title.empty() ? "Untitled window" : item.window.title;
        r.fullscreen = item.window.fullscreen;
        r.selected = item.selected;
        r.mark = item.selected ? "checkmark.circle.fill" : "circle";
        c.list.rows.push_back(std::move(r));
    }
    if (n == 0) {
        c.list.emptyText = "Everything is already on the " + label(m_.target(), false);
        c.list.height = rowPitch;
    } else {
        c.list.height = static_cast<double>(std::min(n, visibleRows)) * rowPitch;
        c.list.scrolls = n > visibleRows;
    }

    const auto selected = m_.selectedCount();
    c.notNow = {"Not now", false, true, 1};
    c.moveSelected = {"Move selected (" + std::to_string(selected) + ")", false, selected > 0,
                      selected > 0 ? 1.0 : 0.4};
    c.moveAll = {"Move all", true, n > 0, n > 0 ? 1.0 : 0.4};
    return c;
}

std::optional<std::vector<IslandView::Pill>> IslandView::pills(double maxName, bool compact) const {
    const double room =
        chooserWidth - 2 * padding - measure_(moveTo, pillFont, FontWeight::medium) - captionGap;
    auto width = [&](const std::string& s) { return measure_(s, pillFont, FontWeight::semibold); };
    std::vector<Pill> out;
    double used = 0;
    for (const auto& d : m_.displays()) {
        Pill p;
        p.display = d.id;
        p.symbol = symbol(d);
        p.label = cutMiddle(label(d, compact), maxName, width);
        p.selected = d.id == m_.target().id;
        p.width = pillInset + pillSymbol + pillGap + width(p.label) + pillInset;
        used += (out.empty() ? 0 : pillSpacing) + p.width;
        out.push_back(std::move(p));
    }
    if (used > room) return std::nullopt;
    return out;
}

IslandView::Destination IslandView::destination() const {
    Destination d;
    d.caption = moveTo;
    if (auto full = pills(170, false)) {
        d.control = Control::pills;
        d.pills = std::move(*full);
    } else if (auto compact = pills(130, true)) {
        d.control = Control::compactPills;
        d.pills = std::move(*compact);
    } else {
        d.control = Control::menu;
        d.menuSymbol = symbol(m_.target());
        d.menuLabel = label(m_.target(), false);
        for (const auto& s : m_.displays())
            d.entries.push_back(
                {s.id, label(s, false), s.id == m_.target().id ? "checkmark" : symbol(s)});
    }
    return d;
}

std::vector<std::string> IslandView::texts() const {
    std::vector<std::string> out;
    auto c = content();
    if (!c) return out;
    auto add = [&](const std::string& s) {
        if (!s.empty()) out.push_back(s);
    };
    if (auto* a = std::get_if<Announce>(&*c)) {
        add(a->title);
        add(a->detail);
    } else if (auto* l = std::get_if<Loading>(&*c)) {
        add(l->text);
    } else if (auto* mv = std::get_if<Moving>(&*c)) {
        add(mv->text);
    } else if (auto* d = std::get_if<Done>(&*c)) {
        add(d->text);
    } else if (auto* ch = std::get_if<Chooser>(&*c)) {
        add(ch->header.title);
        add(ch->header.subtitle);
        if (ch->header.selectOpacity > 0) add(ch->header.selectLabel);
        add(ch->destination.caption);
        for (const auto& p : ch->destination.pills)
            add(p.label);
        add(ch->destination.menuLabel);
        for (const auto& r : ch->list.rows) {
            add(r.app);
            add(r.title);
            if (r.fullscreen) add("Full screen");
        }
        add(ch->list.emptyText);
        add(ch->notNow.text);
        add(ch->moveSelected.text);
        add(ch->moveAll.text);
    }
    return out;
}

void IslandView::tap(IslandModel& m, const std::string& id) {
    m.animated(Animation::easeOut(0.15), [&] { m.toggle(id); });
}

void IslandView::selectAllOrNone(IslandModel& m) {
    const bool select = !m.allSelected();
    m.animated(Animation::easeOut(0.15), [&] { m.selectAll(select); });
}

std::string IslandView::cutMiddle(const std::string& text, double max,
                                  const std::function<double(const std::string&)>& width) {
    if (width(text) <= max) return text;
    const auto cps = codePoints(text);
    // Keep as many characters as fit, the odd one at the front.
    for (size_t keep = cps.size(); keep-- > 0;) {
        const size_t head = (keep + 1) / 2, tail = keep / 2;
        auto cut = joined(cps, 0, head) + "\u2026" + joined(cps, cps.size() - tail, cps.size());
        if (width(cut) <= max) return cut;
    }
    return "\u2026";
}

} // namespace tarnwick
