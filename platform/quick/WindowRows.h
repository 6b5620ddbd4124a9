#pragma once

#include "island/IslandView.h"

#include "platform/quick/KeyedList.h"

#include <vector>

namespace tarnwick::quick {

// The chooser's window rows as a list model: rows are kept by id, so that a
// change of ticks updates the rows in place (their tick animates, the hovered
// or focused row stays the same row, the list keeps its scroll) and a window
// come or gone inserts or removes just its row. Roles: rowId, icon, app,
// title, fullscreen, selected, mark.
class WindowRows : public KeyedList {
    Q_OBJECT
    QML_ANONYMOUS
  public:
    using KeyedList::KeyedList;

    int count() const override { return int(rows_.size()); }
    // Ids are unique within `next`.
    void update(const std::vector<IslandView::Row>& next);

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    std::vector<IslandView::Row> rows_;
};

} // namespace tarnwick::quick
