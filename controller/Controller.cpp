#include "controller/Controller.h"

#include <algorithm>
#include <limits>

namespace tarnwick {

namespace {

constexpr double distantPast = -std::numeric_limits<double>::infinity();
constexpr double settleStep = 0.6;
constexpr double wakeSettle = 6.0;
constexpr double groupWindow = 3.0;
const std::string permissionMissing = "Accessibility permission missing";

std::string plural(int64_t n, const std::string& one) {
    return std::to_string(n) + " " + one + (n == 1 ? "" : "s");
}

} // namespace

Controller::Controller(const Parts& parts)
    : parts_(parts)
    , wokeAt_(distantPast)
    , lastArrival_(distantPast) {}

std::shared_ptr<Controller> Controller::create(const Parts& parts) {
    std::shared_ptr<Controller> c(new Controller(parts));
    c->start();
    return c;
}

void Controller::start() {
    displays_ = Displays::all(parts_.platform.screens);
    // The key of an older layout format; nothing reads it any more.
    parts_.platform.defaults.remove("layouts");
    known_ = Displays::byId(displays_);
    setupKey_ = Displays::configKey(displays_);

    std::weak_ptr<Controller> weak = weak_from_this();
    auto handler = [weak](void (*body)(Controller&)) {
        return [weak, body] {
            if (auto self = weak.lock()) body(*self);
        };
    };
    auto& n = parts_.platform.notifications;
    n.observe(PlatformEvent::displaysChanged, handler([](Controller& c) { c.screensChanged(); }));
    n.observe(PlatformEvent::goingToSleep, handler([](Controller& c) { c.asleep_ = true; }));
    n.observe(PlatformEvent::screensOff, handler([](Controller& c) { c.asleep_ = true; }));
    auto wake = [](Controller& c) {
        c.asleep_ = false;
        c.wokeAt_ = c.parts_.platform.dispatch.now();
        c.screensChanged();
    };
    n.observe(PlatformEvent::wokeUp, handler(wake));
    n.observe(PlatformEvent::screensOn, handler(wake));
    snapshotTimer_ = parts_.platform.dispatch.every(
        snapshotInterval, handler([](Controller& c) { c.autoSnapshot(); }));
}

void Controller::setDisplays(std::vector<Display> displays) {
    displays_ = std::move(displays);
    didChange();
}

void Controller::screensChanged() {
    changed(true);
    setDisplays(Displays::all(parts_.platform.screens));
    if (pending_) pending_->cancel();
    pending_.reset();
    if (asleep_) return; // the wake calls again
    // A display that wakes with the machine takes a while to report its final
    // geometry: wait until six seconds after the wake.
    const double sinceWake = parts_.platform.dispatch.now() - wokeAt_;
    const double wait = std::max(wakeSettle - sinceWake, settleStep);
    auto self = shared_from_this();
    pending_ = parts_.platform.dispatch.after(wait, [self] { self->settle(); });
}

void Controller::settle() {
    pending_.reset();
    auto now = Displays::all(parts_.platform.screens);
    auto [added, removed] = Displays::diff(known_, now);
    known_ = Displays::byId(now);
    setDisplays(now);
    setupArrived();
    // A move still to come keeps the change pending until it is done.
    changed(moveWork_ != nullptr);
    if (!removed.empty() && added.empty()) disconnected(removed, now);
    if (!added.empty()) connected(added);
}

void Controller::setupArrived() {
    auto key = Displays::configKey(displays_);
    if (key == setupKey_) return;
    setupKey_ = key;
    const uint64_t arrival = parts_.layouts.arrived(key);
    if (arrival == 0) return;
    auto self = shared_from_this();
    parts_.platform.dispatch.background(QoS::utility, [self, arrival] {
        self->parts_.layouts.arrivedWith(arrival, self->parts_.mover.windows());
    });
}

void Controller::disconnected(const std::vector<Display>& removed,
                              const std::vector<Display>& remaining) {
    parts_.sound.play("disconnect");
    setStatus(removed.size() == 1 ? removed.front().name + " disconnected"
                                  : std::to_string(removed.size()) + " displays disconnected");
    if (parts_.prefs.announce())
        parts_.island.announce(removed, Link::disconnected, remaining);
    else
        parts_.island.close(Closing::immediately);
    rescue();
}

void Controller::rescue() {
    // A move of ours places its windows itself, and one the disconnect cut
    // short has put back what it had not finished.
    if (parts_.runner.running() || moveWork_ || !parts_.platform.trust.isProcessTrusted()) return;
    auto all = Displays::all(parts_.platform.screens);
    if (all.empty()) return;
    auto self = shared_from_this();
    // The announcement is already up: this takes a moment, well within the
    // time it shows. No snapshot takes the windows it is still placing.
    changed(true);
    parts_.platform.dispatch.background(QoS::userInitiated, [self, all] {
        auto& mover = self->parts_.mover;
        std::vector<Placing> rescues;
        for (const auto& w : mover.windows()) {
            if (w.fullscreen || Displays::reachable(w.frame, all)) continue;
            if (auto to = Displays::rescued(w.frame, all)) rescues.push_back({w.ref, *to});
        }
        mover.access().placeAll(rescues);
        self->parts_.platform.dispatch.main([self] { self->changeDone(); });
    });
}

void Controller::connected(const std::vector<Display>& added) {
    const double settle = std::max(parts_.prefs.settleTime() - settleStep, 0.0);
    const double now = parts_.platform.dispatch.now();
    const bool sameGroup = now - lastArrival_ < settle + groupWindow;
    std::vector<Display> group;
    auto among = [](const std::vector<Display>& list, const Display& a) {
        return std::any_of(list.begin(), list.end(),
                           [&](const Display& d) { return d.id == a.id; });
    };
    // A member that came back is one of `added` now: counted once, however
    // often it is plugged in and out during the group.
    if (sameGroup)
        for (const auto& a : arrivals_)
            if (among(displays_, a) && !among(added, a)) group.push_back(a);
    group.insert(group.end(), added.begin(), added.end());
    arrivals_ = std::move(group);
    lastArrival_ = now;
    if (!sameGroup) parts_.sound.play("connect");
    setStatus(arrivals_.size() == 1 ? arrivals_.front().name + " connected"
                                    : std::to_string(arrivals_.size()) + " displays connected");

    auto target = Displays::target(displays_, parts_.prefs);
    if (!target) return;
    switch (parts_.prefs.onConnect()) {
    case OnConnect::nothing:
        if (parts_.prefs.announce()) parts_.island.announce(arrivals_, Link::connected, displays_);
        break;
    case OnConnect::moveAll: {
        if (parts_.prefs.announce()) parts_.island.announce(arrivals_, Link::connected, displays_);
        // One move per burst: a later connect of the group replaces this one.
        if (moveWork_) moveWork_->cancel();
        auto self = shared_from_this();
        changed(true);
        moveWork_ = parts_.platform.dispatch.after(settle, [self] { self->moveEverything(); });
        break;
    }
    case OnConnect::ask:
        if (!parts_.platform.trust.isProcessTrusted()) {
            setStatus(permissionMissing);
            return;
        }
        parts_.island.choose(*target, arrivals_, settle);
        break;
    }
}

bool Controller::trusted(bool byHand) {
    if (parts_.platform.trust.isProcessTrusted()) return true;
    setStatus(permissionMissing);
    if (byHand) parts_.setupWindow.show(SetupModel::Step::permission);
    return false;
}

void Controller::moveAll(const Display& target) {
    if (!trusted(true)) return;
    auto self = shared_from_this();
    parts_.runner.run({
        .windows = std::nullopt,
        .target = target,
        .all = Displays::all(parts_.platform.screens),
        .done =
            [self, target](const WindowMover::MoveResult& r, int64_t) {
                if (r.moved == 0 && r.leftWindowed == 0 && !r.targetLost)
                    self->setStatus("Nothing to move: every window is already on " + target.name);
            },
    });
}

void Controller::moveEverything() {
    moveWork_.reset();
    auto self = shared_from_this();
    auto done = [self](const WindowMover::MoveResult&, int64_t) { self->changeDone(); };
    if (!trusted(false)) return done({}, 0);
    auto all = Displays::all(parts_.platform.screens);
    auto target = Displays::target(all, parts_.prefs);
    if (!target) return done({}, 0);
    parts_.runner.run({
        .windows = std::nullopt,
        .target = *target,
        .all = all,
        .layout = MoveRunner::LayoutFirst::whenRemembered,
        .reporting = MoveRunner::Reporting::summaryOnly,
        .startText = target->name + " connected \u00b7 moving windows\u2026",
        .done = done,
    });
}

void Controller::chooseWindows() {
    if (!trusted(true)) return;
    auto target = Displays::target(displays_, parts_.prefs);
    if (target && displays_.size() >= 2) parts_.island.choose(*target, {}, 0.0);
}

void Controller::saveLayout() {
    if (!trusted(true)) return;
    const auto n = static_cast<int64_t>(displays_.size());
    auto self = shared_from_this();
    parts_.platform.dispatch.background(QoS::userInitiated, [self, n] {
        auto lines = self->parts_.layouts.save().logLines();
        self->parts_.platform.dispatch.main([self, n, lines] {
            self->log(lines);
            self->setStatus("Layout saved for " + plural(n, "display"));
        });
    });
}

void Controller::restoreLayout() {
    if (!trusted(true)) return;
    const bool has = parts_.layouts.load().count(Displays::configKey(displays_)) > 0;
    auto self = shared_from_this();
    parts_.platform.dispatch.background(QoS::userInitiated, [self, has] {
        auto r = self->parts_.layouts.restore(self->parts_.mover.windows());
        self->parts_.platform.dispatch.main([self, has, restored = r.restored] {
            self->setStatus(has ? "Restored " + plural(restored, "window")
                                : "No saved layout for this display setup");
        });
    });
}

void Controller::preview(bool connected) {
    std::vector<Display> external, builtin;
    for (const auto& d : displays_)
        (d.isBuiltin ? builtin : external).push_back(d);
    auto target = Displays::target(displays_, parts_.prefs);
    if (!target || external.empty()) return;
    if (!connected) {
        parts_.sound.play("disconnect");
        parts_.island.announce(external, Link::disconnected, builtin);
        return;
    }
    parts_.sound.play("connect");
    if (parts_.prefs.onConnect() == OnConnect::ask && parts_.platform.trust.isProcessTrusted())
        parts_.island.choose(*target, external, 0.0);
    else
        parts_.island.announce(external, Link::connected, displays_);
}

void Controller::autoSnapshot() {
    // One display alone is never saved, so undocking keeps the docked arrangement.
    if (!parts_.prefs.rememberLayouts() || displays_.size() < 2 ||
        !parts_.platform.trust.isProcessTrusted() || changing_)
        return;
    auto self = shared_from_this();
    parts_.platform.dispatch.background(QoS::utility, [self] {
        auto lines = self->parts_.layouts.save(Layouts::Saving::periodic).logLines();
        if (!lines.empty())
            self->parts_.platform.dispatch.main([self, lines] { self->log(lines); });
    });
}

void Controller::log(const std::vector<std::string>& lines) {
    for (const auto& line : lines)
        parts_.platform.log.line(line);
}

} // namespace tarnwick
