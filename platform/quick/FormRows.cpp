#include "platform/quick/FormRows.h"

#include <QQmlEngine>

#include <algorithm>

namespace tarnwick::quick {

namespace {

enum Role { items = Qt::UserRole + 1, separated, title, footer, header, lines };

} // namespace

void FormRows::update(std::vector<Line> next) {
    follow(
        lines_, std::move(next), [](const Line& l) { return l.key; },
        [](Line& have, Line&& want) {
            // Said changed even when the same: a switch the user flipped holds
            // its own state until its line is told again what the model says
            // (the model may have refused, or been set back within the turn).
            have = std::move(want);
            return true;
        });
}

QVariant FormRows::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= count()) return {};
    const auto& l = lines_[size_t(index.row())];
    if (role == Role::items) return l.items;
    if (role == Role::separated) return l.separated;
    return {};
}

QHash<int, QByteArray> FormRows::roleNames() const {
    return {{Role::items, "items"}, {Role::separated, "separated"}};
}

FormSections::~FormSections() {
    // The views that read the lines are gone before their bridge; nothing is
    // left to wait for, and the program may have no event loop any more.
    for (auto& g : sections_)
        delete g.lines.release();
}

void FormSections::update(std::vector<Section> next) {
    std::vector<Group> groups;
    for (auto& s : next) {
        Group g{s.key, s.title, s.footer, s.header, nullptr, {}};
        const bool known = std::any_of(sections_.begin(), sections_.end(),
                                       [&](const Group& have) { return have.key == s.key; });
        if (known) {
            g.wanted = std::move(s.lines);
        } else {
            // A new group comes with its lines, before the view asks for them.
            g.lines.reset(new FormRows);
            QQmlEngine::setObjectOwnership(g.lines.get(), QQmlEngine::CppOwnership);
            g.lines->update(std::move(s.lines));
        }
        groups.push_back(std::move(g));
    }
    follow(
        sections_, std::move(groups), [](const Group& g) { return g.key; },
        [](Group& have, Group&& want) {
            // The group's lines follow in place; its delegate stays.
            have.lines->update(std::move(want.wanted));
            if (have.title == want.title && have.footer == want.footer &&
                have.header == want.header)
                return false;
            have.title = want.title;
            have.footer = want.footer;
            have.header = want.header;
            return true;
        });
}

QVariant FormSections::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= count()) return {};
    const auto& g = sections_[size_t(index.row())];
    switch (role) {
    case Role::title:
        return g.title;
    case Role::footer:
        return g.footer;
    case Role::header:
        return g.header;
    case Role::lines:
        return QVariant::fromValue<QObject*>(g.lines.get());
    }
    return {};
}

QHash<int, QByteArray> FormSections::roleNames() const {
    return {{Role::title, "title"},
            {Role::footer, "footer"},
            {Role::header, "header"},
            {Role::lines, "lines"}};
}

} // namespace tarnwick::quick
