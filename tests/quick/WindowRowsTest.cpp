#include "platform/quick/WindowRows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace tarnwick;
using quick::WindowRows;

namespace {

IslandView::Row row(const std::string& id, bool selected = true) {
    return {id, "icon-" + id, "App", "Window " + id, false, selected, selected ? "tick" : "circle"};
}

// What a view bound to the model hears, one word per signal: "-2" row 2
// removed, "+1" inserted, "3>0" moved, "~1" changed, "reset".
struct Heard {
    std::vector<std::string> said;
    explicit Heard(WindowRows& m) {
        QObject::connect(&m, &WindowRows::rowsRemoved, [this](auto, int first, int) {
            said.push_back("-" + std::to_string(first));
        });
        QObject::connect(&m, &WindowRows::rowsInserted, [this](auto, int first, int) {
            said.push_back("+" + std::to_string(first));
        });
        QObject::connect(&m, &WindowRows::rowsMoved, [this](auto, int from, int, auto, int to) {
            said.push_back(std::to_string(from) + ">" + std::to_string(to));
        });
        QObject::connect(&m, &WindowRows::dataChanged, [this](const QModelIndex& i, auto, auto) {
            said.push_back("~" + std::to_string(i.row()));
        });
        QObject::connect(&m, &WindowRows::modelReset, [this] { said.push_back("reset"); });
    }
};

std::vector<std::string> ids(const WindowRows& m) {
    std::vector<std::string> out;
    for (int i = 0; i < m.rowCount(); ++i)
        out.push_back(m.data(m.index(i), Qt::UserRole + 1).toString().toStdString());
    return out;
}

} // namespace

// The chooser's rows follow the model by id: a tick changes one row in place,
// a window gone or come removes or inserts just its row, a new order moves
// rows, and the list is never rebuilt (which would lose the focused row and
// the scroll).
TEST(WindowRows, FollowsTheRowsByIdWithTheFewestChanges) {
    WindowRows m;
    m.update({row("a"), row("b"), row("c")});
    Heard heard(m);

    m.update({row("a"), row("b", false), row("c")});
    EXPECT_EQ(heard.said, (std::vector<std::string>{"~1"}));
    EXPECT_EQ(m.data(m.index(1), Qt::UserRole + 6).toBool(), false);

    heard.said.clear();
    m.update({row("a"), row("b", false), row("c")});
    EXPECT_TRUE(heard.said.empty()) << "nothing changed, nothing said";

    heard.said.clear();
    m.update({row("a"), row("c"), row("d")});
    EXPECT_EQ(heard.said, (std::vector<std::string>{"-1", "+2"}));
    EXPECT_EQ(ids(m), (std::vector<std::string>{"a", "c", "d"}));

    heard.said.clear();
    m.update({row("d"), row("a", false), row("c")});
    EXPECT_EQ(heard.said, (std::vector<std::string>{"2>0", "~1"}));
    EXPECT_EQ(ids(m), (std::vector<std::string>{"d", "a", "c"}));

    heard.said.clear();
    m.update({});
    EXPECT_EQ(m.count(), 0);
    EXPECT_EQ(heard.said.size(), 3u);
    for (const auto& s : heard.said)
        EXPECT_EQ(s[0], '-');
}
