#include "platform/quick/WindowRows.h"

#include "platform/quick/QuickView.h"

namespace tarnwick::quick {

namespace {

enum Role { rowId = Qt::UserRole + 1, icon, app, title, fullscreen, selected, mark };

bool same(const IslandView::Row& a, const IslandView::Row& b) {
    return a.id == b.id && a.icon == b.icon && a.app == b.app && a.title == b.title &&
           a.fullscreen == b.fullscreen && a.selected == b.selected && a.mark == b.mark;
}

} // namespace

void WindowRows::update(const std::vector<IslandView::Row>& next) {
    follow(
        rows_, next, [](const IslandView::Row& r) { return r.id; },
        [](IslandView::Row& have, IslandView::Row&& want) {
            if (same(have, want)) return false;
            have = std::move(want);
            return true;
        });
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
