#pragma once

#include "base/Geometry.h"
#include "base/Observable.h"
#include "displays/Displays.h"
#include "windows/WindowMover.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tarnwick {

// How a view should animate a change. The presenter and the view's own
// actions choose it; it travels with the change so that a toolkit bridge can
// play it without knowing who asked.
struct Animation {
    enum class Curve { none, spring, easeOut };
    Curve curve = Curve::none;
    double response = 0; // spring: seconds to settle
    double damping = 0;  // spring: damping fraction
    double duration = 0; // ease-out: seconds

    static Animation spring(double response, double damping) {
        return {Curve::spring, response, damping, 0};
    }
    static Animation easeOut(double seconds) { return {Curve::easeOut, 0, 0, seconds}; }
    bool operator==(const Animation&) const = default;
};

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
        AppWindow window;
        bool selected = false;
    };

    // What an island is opened with; the rest is filled in as it runs.
    struct Seed {
        Display target;
        std::vector<Display> subjects;
        std::vector<Display> remaining;
        Phase phase = Loading{};
        Size notch;
    };

    // `displays`: every connected display, as read when the island opens.
    IslandModel(Seed seed, std::vector<Display> displays);

    const Size& notch() const { return notch_; }
    const std::vector<Display>& subjects() const { return subjects_; }
    const std::vector<Display>& remaining() const { return remaining_; }
    bool expanded() const { return expanded_; }
    const Phase& phase() const { return phase_; }
    const std::vector<Display>& displays() const { return displays_; }
    const Display& target() const { return target_; }
    const std::vector<Item>& items() const { return items_; }
    int64_t alreadyThere() const { return alreadyThere_; }
    const std::vector<AppWindow>& windows() const { return windows_; }

    // One display's name, or "N displays".
    std::string subjectName() const;
    int64_t selectedCount() const;
    bool allSelected() const;

    void setExpanded(bool v);
    void setPhase(Phase v);
    void setDisplays(std::vector<Display> v);
    void setTarget(Display v);
    // Not shown by itself: rebuild() turns it into items.
    void setWindows(std::vector<AppWindow> v) { windows_ = std::move(v); }

    // Offers every listed window that is on a display other than the target,
    // ticked by default when it comes from or goes to the built-in screen,
    // ticked ones first; any ticks the user made are dropped.
    void rebuild();
    // Flips one item's tick; false when no item has that id (the list was
    // rebuilt under the caller).
    bool toggle(const std::string& id);
    void selectAll(bool selected);

    // Runs `changes` with every change inside it made under `animation`.
    template <typename F> void animated(const Animation& animation, F&& changes) {
        const Animation outer = std::exchange(transaction_, animation);
        struct Restore {
            IslandModel& m;
            Animation outer;
            ~Restore() { m.transaction_ = outer; }
        } restore{*this, outer};
        changes();
    }
    // The animation the latest change was made with.
    const Animation& animation() const { return animation_; }

  private:
    void changed();

    const Size notch_;
    const std::vector<Display> subjects_;
    const std::vector<Display> remaining_;
    bool expanded_ = false;
    Phase phase_;
    std::vector<Display> displays_;
    Display target_;
    std::vector<Item> items_;
    int64_t alreadyThere_ = 0;
    std::vector<AppWindow> windows_;

    Animation transaction_;
    Animation animation_;
};

// The phase's name as scenarios and the transcript spell it: "choosing",
// "announce(connected)", "done(failed)".
std::string phaseName(const IslandModel::Phase& phase);
// With its text, as the log and the transcript write it: `choosing`,
// `moving "Moving 1 of 4 · Mail" 0.125`, `done(ok) "Moved 4 windows to …"`.
std::string describePhase(const IslandModel::Phase& phase);

} // namespace tarnwick
