#include "platform/quick/WindowRows.h"

#include "platform/quick/QuickView.h"

#include <algorithm>

namespace tarnwick::quick {

namespace {

enum Role { rowId = Qt::UserRole + 1, icon, app, title, fullscreen, selected, mark };

bool same(const IslandView::Row& a, const IslandView::Row& b) {
    return a.id == b.id && a.icon == b.icon && a.app == b.app && a.title == b.title &&
           a.fullscreen == b.fullscreen && a.selected == b.selected && a.mark == b.mark;
}

} // namespace

void WindowRows::update(const std::vector<IslandView::Row>& next) {
    const int before = count();
    auto wanted = [&](const std::string& id) {
        return std::any_of(next.begin(), next.end(), [&](const auto& r) { return r.id == id; });
    };
    for (int i = count() - 1; i >= 0; --i)
        if (!wanted(rows_[size_t(i)].id)) {
            beginRemoveRows({}, i, i);
            rows_.erase(rows_.begin() + i);
            endRemoveRows();
        }
    // What is left is in `next`; each place is then the row that belongs there.
    for (size_t i = 0; i < next.size(); ++i) {
        if (i < rows_.size() && rows_[i].id == next[i].id) {
            if (!same(rows_[i], next[i])) {
                rows_[i] = next[i];
                emit dataChanged(index(int(i)), index(int(i)));
            }
            continue;
        }
        auto it = std::find_if(rows_.begin() + std::ptrdiff_t(i), rows_.end(),
                               [&](const auto& r) { return r.id == next[i].id; });
        if (it == rows_.end()) {
            beginInsertRows({}, int(i), int(i));
            rows_.insert(rows_.begin() + std::ptrdiff_t(i), next[i]);
            endInsertRows();
            continue;
        }
        const int from = int(it - rows_.begin());
        beginMoveRows({}, from, from, {}, int(i));
        auto row = std::move(*it);
        rows_.erase(it);
        rows_.insert(rows_.begin() + std::ptrdiff_t(i), std::move(row));
        endMoveRows();
        if (!same(rows_[i], next[i])) {
            rows_[i] = next[i];
            emit dataChanged(index(int(i)), index(int(i)));
        }
    }
    if (count() != before) emit countChanged();
}

int WindowRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant WindowRows::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= count()) return {};
    const auto& r = rows_[size_t(index.row())];
    switch (role) {
    case Role::rowId:
        return qs(r.id);
    case Role::icon:
        return qs(r.icon);
    case Role::app:
        return qs(r.app);
    case Role::title:
        return qs(r.title);
    case Role::fullscreen:
        return r.fullscreen;
    case Role::selected:
        return r.selected;
    case Role::mark:
        return qs(r.mark);
    }
    return {};
}

QHash<int, QByteArray> WindowRows::roleNames() const {
    return {{Role::rowId, "rowId"},
            {Role::icon, "icon"},
            {Role::app, "app"},
            {Role::title, "title"},
            {Role::fullscreen, "fullscreen"},
            {Role::selected, "selected"},
            {Role::mark, "mark"}};
}

} // namespace tarnwick::quick
