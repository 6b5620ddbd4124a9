#pragma once

#include "platform/quick/KeyedList.h"

#include <QVariantList>
#include <QVariantMap>

#include <memory>
#include <string>
#include <vector>

namespace tarnwick::quick {

// The lines of one group of the settings form: each line is an item and the
// ones laid out beside it (`items`, maps as SettingsBridge makes them), and
// whether a rule goes above it (`separated`). An application's line is known
// by its bundle, so the "Apps to move" list keeps its rows (their switches,
// the focus) as applications come and go; any other line by its kind and
// place among the group's other lines.
class FormRows : public KeyedList {
    Q_OBJECT
    QML_ANONYMOUS
  public:
    struct Line {
        std::string key;
        QVariantList items;
        bool separated = false;
    };

    using KeyedList::KeyedList;
    int count() const override { return int(lines_.size()); }
    void update(std::vector<Line> next);

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    std::vector<Line> lines_;
};

// The settings form's groups, known by their titles: `title`, `footer`,
// `header` (the header item when the group is the window's header, else
// null) and `lines`, the group's FormRows.
class FormSections : public KeyedList {
    Q_OBJECT
    QML_ANONYMOUS
  public:
    struct Section {
        std::string key;
        QString title, footer;
        QVariant header;
        std::vector<FormRows::Line> lines;
    };

    using KeyedList::KeyedList;
    ~FormSections() override;
    int count() const override { return int(sections_.size()); }
    void update(std::vector<Section> next);

    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  private:
    // A delegate may still read a group's lines while it goes.
    struct Later {
        void operator()(QObject* o) const { o->deleteLater(); }
    };
    struct Group {
        std::string key;
        QString title, footer;
        QVariant header;
        std::unique_ptr<FormRows, Later> lines;
        std::vector<FormRows::Line> wanted; // for a group that stays
    };
    std::vector<Group> sections_;
};

} // namespace tarnwick::quick
