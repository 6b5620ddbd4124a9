#include "island/Island.h"

#include <algorithm>

namespace tarnwick {

Island::Island(Parts parts)
    : state_(std::make_shared<State>(State{std::move(parts), nullptr, nullptr})) {}

bool Island::isCurrent(const std::weak_ptr<State>& weak, const std::shared_ptr<IslandModel>& m) {
    auto s = weak.lock();
    return s && s->model && s->model == m;
}

bool Island::moving() const {
    return state_->model && std::holds_alternative<IslandModel::Moving>(state_->model->phase());
}

std::optional<Island::Spot> Island::place() {
    auto& screens = state_->parts.platform.screens;
    const auto list = screens.screens();
    if (list.empty()) return std::nullopt;

    // The screen with the camera housing, else the built-in one, else the one
    // the user is looking at.
    const ScreenInfo* screen = nullptr;
    auto first = [&](auto pred) -> const ScreenInfo* {
        auto it = std::find_if(list.begin(), list.end(), pred);
        return it == list.end() ? nullptr : &*it;
    };
    screen = first([](const ScreenInfo& s) { return s.safeAreaTop > 0; });
    if (!screen)
        screen =
            first([&](const ScreenInfo& s) { return s.number && screens.isBuiltin(*s.number); });
    if (!screen) {
        const Point mouse = screens.mouseLocation();
        screen = first([&](const ScreenInfo& s) { return pointerIn(mouse, s.frame); });
    }
    if (!screen)
        if (auto main = screens.mainScreen(); main && *main < list.size()) screen = &list[*main];
    // A screen without a number cannot be named to the platform; the panel
    // then goes to the primary one, which needs no name.
    if (!screen || !screen->number) screen = &list.front();

    const auto& args = state_->parts.args;
    const bool noNotch =
        args.size() > 1 && std::find(args.begin() + 1, args.end(), "--no-notch") != args.end();
    Spot spot;
    if (!noNotch && screen->safeAreaTop > 0 && screen->auxiliaryTopLeft &&
        screen->auxiliaryTopRight)
        spot.notch = {screen->frame.width() - screen->auxiliaryTopLeft->width() -
                          screen->auxiliaryTopRight->width(),
                      screen->safeAreaTop};

    // Out of the housing itself, or just below the menu bar.
    spot.at = {.display = screen->number,
               .from = spot.notch.h > 0 ? PanelPlacement::From::screenTop
                                        : PanelPlacement::From::usableTop,
               .down = spot.notch.h > 0 ? 0.0 : 8.0,
               .size = {panelSize, panelSize}};
    return spot;
}

std::shared_ptr<IslandModel> Island::present(IslandModel::Seed seed) {
    auto s = state_;
    if (s->panel && s->model) close(s, Closing::immediately);

    auto spot = place();
    if (!spot) return nullptr;
    seed.notch = spot->notch;
    auto m =
        std::make_shared<IslandModel>(std::move(seed), Displays::all(s->parts.platform.screens));
    std::shared_ptr<Panel> panel = s->parts.platform.surfaces.makePanel(spot->at, m);
    if (!panel) return nullptr;
    panel->show();
    s->panel = std::move(panel);
    s->model = m;

    std::weak_ptr<State> weak = s;
    s->parts.platform.dispatch.after(expandDelay, [weak, m] {
        if (isCurrent(weak, m)) m->animated(spring(), [&] { m->setExpanded(true); });
    });
    return m;
}

void Island::announce(const std::vector<Display>& subjects, Link link,
                      const std::vector<Display>& remaining) {
    if (subjects.empty() || moving()) return;
    auto m = present({
        .target = subjects.front(),
        .subjects = subjects,
        .remaining = remaining,
        .phase = IslandModel::Announce{link == Link::connected},
    });
    if (!m) return;
    std::weak_ptr<State> weak = state_;
    state_->parts.platform.dispatch.after(announceTime, [weak, m] {
        if (isCurrent(weak, m)) close(weak.lock(), Closing::animated);
    });
}

void Island::choose(const Display& target, const std::vector<Display>& connected, double settle) {
    if (moving()) return;
    auto& parts = state_->parts;
    const bool announcing = !connected.empty() && parts.prefs.announce();
    auto m = present({
        .target = target,
        .subjects = connected,
        .phase = announcing ? IslandModel::Phase{IslandModel::Announce{true}}
                            : IslandModel::Phase{IslandModel::Loading{}},
    });
    if (!m) return;

    // An announcement plays for a while before it turns into the chooser,
    // however quickly the windows are listed.
    const double minimum = announcing && settle <= minimumAnnounce ? minimumAnnounce : settle;
    const double start = parts.platform.dispatch.now();
    std::weak_ptr<State> weak = state_;
    parts.platform.dispatch.after(settle, [weak, m, minimum, start] {
        if (!isCurrent(weak, m)) return;
        auto& parts = weak.lock()->parts;
        auto all = Displays::all(parts.platform.screens);
        // The listing holds neither the presenter nor the model: it only
        // reports back, and the main thread decides whether anyone still cares.
        auto& dispatch = parts.platform.dispatch;
        auto& mover = parts.mover;
        std::weak_ptr<IslandModel> model = m;
        dispatch.background(QoS::userInitiated, [weak, model, minimum, start, &dispatch, &mover,
                                                 all = std::move(all)] {
            auto windows = mover.windows();
            const double wait = std::max(minimum - (dispatch.now() - start), 0.0);
            dispatch.after(wait, [weak, model, all, windows = std::move(windows)]() mutable {
                auto m = model.lock();
                if (!m || !isCurrent(weak, m)) return;
                m->animated(spring(), [&] {
                    // The same display, as it is now: its name or frame may have changed.
                    auto now = std::find_if(all.begin(), all.end(), [&](const Display& d) {
                        return d.id == m->target().id;
                    });
                    Display target = now != all.end() ? *now : m->target();
                    m->setDisplays(std::move(all));
                    m->setTarget(std::move(target));
                    m->setWindows(std::move(windows));
                    m->rebuild();
                    m->setPhase(IslandModel::Choosing{});
                });
            });
        });
    });
}

void Island::move(const std::shared_ptr<IslandModel>& m, Selection which) {
    // A second press while the first move runs, or a press on an island
    // that is already going away.
    if (!m || m != state_->model || !std::holds_alternative<IslandModel::Choosing>(m->phase()))
        return;
    std::vector<AppWindow> windows;
    for (const auto& item : m->items())
        if (which == Selection::all || item.selected) windows.push_back(item.window);
    if (windows.empty()) return;

    const Display target = m->target();
    m->animated(spring(), [&] { m->setPhase(IslandModel::Moving{"Starting\u2026", 0}); });

    auto& parts = state_->parts;
    const std::string name =
        target.isBuiltin ? parts.platform.screens.builtinWords().screen : target.name;
    // The runner's work may outlive the island; its reports find out on the
    // main thread whether the model is still around.
    std::weak_ptr<State> weak = state_;
    std::weak_ptr<IslandModel> model = m;
    parts.runner.run({
        .windows = std::move(windows),
        .target = target,
        .all = Displays::all(parts.platform.screens),
        // Only the chosen windows: the layout may cover others the user left unticked.
        .layout = MoveRunner::LayoutFirst::whenRemembered,
        .progress =
            [model](int64_t i, int64_t n, const std::string& app) {
                auto m = model.lock();
                if (!m) return;
                const double fraction = n > 0 ? (static_cast<double>(i) - 0.5) / n : 0;
                m->animated(Animation::easeOut(0.25), [&] {
                    m->setPhase(IslandModel::Moving{"Moving " + std::to_string(i) + " of " +
                                                        std::to_string(n) + " \u00b7 " + app,
                                                    fraction});
                });
            },
        .done =
            [weak, model, name](const WindowMover::MoveResult& r, int64_t restored) {
                auto m = model.lock();
                auto s = weak.lock();
                if (!m || !s) return;
                const bool ok = r.leftWindowed == 0 && !r.targetLost;
                m->animated(spring(), [&] {
                    m->setPhase(IslandModel::Done{MoveRunner::summary(r, name, restored), ok});
                });
                s->parts.platform.dispatch.after(ok ? closeAfterDone : closeAfterFailure,
                                                 [weak, m] {
                                                     if (isCurrent(weak, m))
                                                         close(weak.lock(), Closing::animated);
                                                 });
            },
    });
}

void Island::retarget(const std::shared_ptr<IslandModel>& m, const Display& display) {
    if (!m) return;
    m->animated(spring(), [&] {
        m->setTarget(display);
        m->rebuild();
    });
}

void Island::close(Closing how) {
    close(state_, how);
}

void Island::close(const std::shared_ptr<State>& s, Closing how) {
    if (!s || !s->panel || !s->model) return;
    // Cleared first, so that every pending step of the old island finds it gone.
    auto panel = std::exchange(s->panel, nullptr);
    auto m = std::exchange(s->model, nullptr);
    if (how == Closing::immediately) {
        panel->remove();
        return;
    }
    m->animated(Animation::spring(0.35, 0.95), [&] { m->setExpanded(false); });
    s->parts.platform.dispatch.after(tuckTime, [panel] { panel->remove(); });
}

} // namespace tarnwick
