#include "island/IslandModel.h"

#include "base/JsonText.h"

#include <algorithm>

namespace tarnwick {

IslandModel::IslandModel(Seed seed, std::vector<Display> displays)
    : notch_(seed.notch)
    , subjects_(std::move(seed.subjects))
    , remaining_(std::move(seed.remaining))
    , phase_(std::move(seed.phase))
    , displays_(std::move(displays))
    , target_(std::move(seed.target)) {}

std::string IslandModel::subjectName() const {
    if (subjects_.size() == 1) return subjects_.front().name;
    return std::to_string(subjects_.size()) + " displays";
}

int64_t IslandModel::selectedCount() const {
    return std::count_if(items_.begin(), items_.end(), [](const Item& i) { return i.selected; });
}

bool IslandModel::allSelected() const {
    return std::all_of(items_.begin(), items_.end(), [](const Item& i) { return i.selected; });
}

void IslandModel::changed() {
    animation_ = transaction_;
    didChange();
}

void IslandModel::setExpanded(bool v) {
    expanded_ = v;
    changed();
}

void IslandModel::setPhase(Phase v) {
    phase_ = std::move(v);
    changed();
}

void IslandModel::setDisplays(std::vector<Display> v) {
    displays_ = std::move(v);
    changed();
}

void IslandModel::setTarget(Display v) {
    target_ = std::move(v);
    changed();
}

void IslandModel::rebuild() {
    std::vector<Item> items;
    int64_t there = 0;
    for (const auto& w : windows_) {
        auto on = Displays::containing(w.frame, displays_);
        if (on && on->id == target_.id) {
            ++there;
            continue;
        }
        // A window off every screen is on none of them: offered, and ticked,
        // since the user cannot reach it any other way.
        const bool ticked = !on || target_.isBuiltin || on->isBuiltin;
        // The id carries the destination, so a view keyed by it starts afresh
        // when the destination changes.
        items.push_back(
            {std::to_string(target_.id) + "-" + std::to_string(items.size()), w, ticked});
    }
    std::stable_partition(items.begin(), items.end(), [](const Item& i) { return i.selected; });
    items_ = std::move(items);
    alreadyThere_ = there;
    changed();
}

bool IslandModel::toggle(const std::string& id) {
    auto it = std::find_if(items_.begin(), items_.end(), [&](const Item& i) { return i.id == id; });
    if (it == items_.end()) return false;
    it->selected = !it->selected;
    changed();
    return true;
}

void IslandModel::selectAll(bool selected) {
    for (auto& i : items_)
        i.selected = selected;
    changed();
}

std::string phaseName(const IslandModel::Phase& phase) {
    using M = IslandModel;
    if (auto* a = std::get_if<M::Announce>(&phase))
        return a->connected ? "announce(connected)" : "announce(disconnected)";
    if (auto* d = std::get_if<M::Done>(&phase)) return d->ok ? "done(ok)" : "done(failed)";
    if (std::holds_alternative<M::Moving>(phase)) return "moving";
    if (std::holds_alternative<M::Loading>(phase)) return "loading";
    return "choosing";
}

std::string describePhase(const IslandModel::Phase& phase) {
    if (auto* m = std::get_if<IslandModel::Moving>(&phase))
        return "moving " + quoted(m->text) + " " + formatNumber(m->fraction);
    if (auto* d = std::get_if<IslandModel::Done>(&phase))
        return phaseName(phase) + " " + quoted(d->text);
    return phaseName(phase);
}

} // namespace tarnwick
