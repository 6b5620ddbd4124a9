#pragma once

#include "base/Geometry.h"
#include "base/Observable.h"
#include "displays/Displays.h"
#include "windows/WindowMover.h"

#include <string>
#include <variant>
#include <vector>

namespace tarnwick {

// The state of one island: what it is about, what it shows now, where windows
// go and which of them the user ticked. One model per island, never reused
// after its island closes. Main thread only.
class IslandModel : public Observable {
  public:
    struct Announce {
        bool connected = false;
        bool operator==(const Announce&) const = default;
    };
    struct Moving {
        std::string text;
        double fraction = 0;
        bool operator==(const Moving&) const = default;
    };
    struct Done {
        std::string text;
        bool ok = false;
        bool operator==(const Done&) const = default;
    };
    struct Loading {
        bool operator==(const Loading&) const = default;
    };
    struct Choosing {
        bool operator==(const Choosing&) const = default;
    };
    using Phase = std::variant<Announce, Moving, Done, Loading, Choosing>;

    struct Item {
        std::string id;
        AXWindow window;
        bool selected = false;
    };

    // TODO(island): fields, rebuild(), subjectName(), selectedCount().
};

} // namespace tarnwick
