#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <algorithm>
#include <vector>

namespace tarnwick::quick {

// A list model whose rows have identities: `follow` turns the rows into
// the wanted ones with the fewest removes, inserts, moves and changes, so
// that a view bound to it keeps the delegates of the rows that stay (their
// animations, focus and hover) and its scroll. Counts itself as `count`.
class KeyedList : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(int count READ count NOTIFY countChanged)
  public:
    using QAbstractListModel::QAbstractListModel;

    virtual int count() const = 0;
    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : count();
    }

  signals:
    void countChanged();

  protected:
    // `rows` becomes `next`; `key(row)` is a row's identity, unique within
    // `next`; `update(have, want)` makes a row that stays what is wanted and
    // says whether what it shows changed.
    template <typename T, typename Key, typename Update>
    void follow(std::vector<T>& rows, std::vector<T> next, Key key, Update update) {
        const int before = count();
        for (int i = int(rows.size()) - 1; i >= 0; --i) {
            const auto k = key(rows[size_t(i)]);
            if (std::none_of(next.begin(), next.end(), [&](const T& r) { return key(r) == k; })) {
                beginRemoveRows({}, i, i);
                rows.erase(rows.begin() + i);
                endRemoveRows();
            }
        }
        // What is left is wanted; each place in turn gets the row that belongs there.
        for (size_t i = 0; i < next.size(); ++i) {
            const auto k = key(next[i]);
            auto it = std::find_if(rows.begin() + std::ptrdiff_t(std::min(i, rows.size())),
                                   rows.end(), [&](const T& r) { return key(r) == k; });
            if (it == rows.end()) {
                beginInsertRows({}, int(i), int(i));
                rows.insert(rows.begin() + std::ptrdiff_t(i), std::move(next[i]));
                endInsertRows();
                continue;
            }
            if (const int from = int(it - rows.begin()); from != int(i)) {
                beginMoveRows({}, from, from, {}, int(i));
                T row = std::move(*it);
                rows.erase(it);
                rows.insert(rows.begin() + std::ptrdiff_t(i), std::move(row));
                endMoveRows();
            }
            if (update(rows[i], std::move(next[i]))) emit dataChanged(index(int(i)), index(int(i)));
        }
        if (count() != before) emit countChanged();
    }
};

} // namespace tarnwick::quick
