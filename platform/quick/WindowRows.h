#pragma once

#include "island/IslandView.h"

#include <QAbstractListModel>

#include <vector>

namespace tarnwick::quick {

// The chooser's window rows as a list model: rows are kept by id, so that a
// change of ticks updates the rows in place (their tick animates, the hovered
// or focused row stays the same row, the list keeps its scroll) and a window
// come or gone inserts or removes just its row. Roles: rowId, icon, app,
// title, fullscreen, selected, mark.
class WindowRows : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
  public:
    using QAbstractListModel::QAbstractListModel;

    int count() const { return int(rows_.size()); }
    // Makes the model `next` with the fewest inserts, removes, moves and
    // changes; ids are unique within `next`.
    void update(const std::vector<IslandView::Row>& next);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  signals:
    void countChanged();

  private:
    std::vector<IslandView::Row> rows_;
};

} // namespace tarnwick::quick
