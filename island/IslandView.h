#pragma once

#include "island/IslandModel.h"
#include "island/NotchShape.h"
#include "ports/Screens.h"
#include "ports/Surfaces.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarnwick {

// The width of one line of text in the system font (Surfaces::textWidth).
using Measure = std::function<double(const std::string& text, double size, FontWeight weight)>;

// What the island shows for a model, decided down to every text, size,
// enabled state and order, so that a toolkit view only lays it out. Reads
// the model when asked; keeps nothing. Main thread only.
class IslandView {
  public:
    static constexpr double ear = 12;     // the flares of a notched island
    static constexpr double padding = 18; // content inset from the card's sides
    static constexpr double announceWidth = 400;
    static constexpr double chooserWidth = 520; // every phase but the announcement
    static constexpr double rowPitch = 52;      // a 48-point row and the list's spacing
    static constexpr size_t visibleRows = 6;

    struct Frame {
        bool notched = false;
        double width = 0;      // the card, ears not included
        double earPadding = 0; // on each side
        double outerWidth = 0;
        std::optional<double> minHeight;
        double topSpace = 0; // kept empty above the content: the housing, or a margin
        IslandShape shape;
        double shadowOpacity = 0;
    };

    struct Announce {
        bool connected = false;
        bool multiple = false;
        double track = 130;
        std::string title;
        std::string detail;
    };
    struct Loading {
        std::string text;
    };
    struct Moving {
        std::string text;
        double fraction = 0;
    };
    struct Done {
        std::string symbol;
        bool ok = false;
        std::string text;
    };

    struct Header {
        std::string symbol;
        std::string title;
        std::string subtitle;
        std::string selectLabel;
        double selectOpacity = 1;
    };
    struct Pill {
        uint32_t display = 0;
        std::string symbol;
        std::string label; // as shown: cut in the middle when too wide
        bool selected = false;
        double width = 0; // the whole capsule
    };
    enum class Control { pills, compactPills, menu };
    struct MenuEntry {
        uint32_t display = 0;
        std::string label;
        std::string symbol; // "checkmark" for the current destination
    };
    struct Destination {
        std::string caption;
        Control control = Control::pills;
        std::vector<Pill> pills; // empty when the menu is shown
        std::string menuSymbol, menuLabel;
        std::vector<MenuEntry> entries;
    };
    struct Row {
        std::string id;
        std::string icon;
        std::string app;
        std::string title;
        bool fullscreen = false;
        bool selected = false;
        std::string mark;
    };
    struct List {
        std::vector<Row> rows;
        std::string emptyText; // shown instead of the rows when there are none
        double height = 0;
        bool scrolls = false;
    };
    struct Button {
        std::string text;
        bool prominent = false;
        bool enabled = true;
        double opacity = 1;
    };
    struct Chooser {
        Header header;
        Destination destination;
        List list;
        Button notNow, moveSelected, moveAll;
    };
    using Content = std::variant<Announce, Loading, Chooser, Moving, Done>;

    IslandView(const IslandModel& m, Measure measure, BuiltinWords words);

    Frame frame() const;
    // Nothing while the island is tucked into the notch.
    std::optional<Content> content() const;
    std::string announceDetail(bool connected) const;
    Chooser chooser() const;
    // The first control that fits beside "Move to": full pills, compact
    // pills, else the menu.
    Destination destination() const;
    // nullopt when the row does not fit the room beside "Move to".
    std::optional<std::vector<Pill>> pills(double maxName, bool compact) const;
    // Every text shown now, top to bottom.
    std::vector<std::string> texts() const;

    // The user's taps that only touch the model.
    static void tap(IslandModel& m, const std::string& id);
    static void selectAllOrNone(IslandModel& m);

    // `text` cut in the middle with "…" until `width` of it is at most `max`.
    static std::string cutMiddle(const std::string& text, double max,
                                 const std::function<double(const std::string&)>& width);

  private:
    std::string label(const Display& d, bool compact) const;
    static std::string symbol(const Display& d);

    const IslandModel& m_;
    Measure measure_;
    BuiltinWords words_;
};

} // namespace tarnwick
