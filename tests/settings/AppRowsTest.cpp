#include "settings/AppRows.h"

#include "tests/app/ShellWorld.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace tarnwick;
using tarnwick::shelltest::ShellWorld;

TEST(AppNames, SortAsAReaderExpects) {
    std::vector<std::string> names{"zoom",  "Éclair", "eagle", "Fig",  "Écran",    "Ecran",
                                   "Zebra", "ÆON",    "Adobe", "日本", "1Password"};
    std::stable_sort(names.begin(), names.end(),
                     [](const auto& a, const auto& b) { return compareNames(a, b) < 0; });
    EXPECT_EQ(names, (std::vector<std::string>{"1Password", "Adobe", "ÆON", "eagle", "Éclair",
                                               "Ecran", "Écran", "Fig", "Zebra", "zoom", "日本"}));
    EXPECT_EQ(compareNames("safari", "Safari"), 0);
    EXPECT_EQ(compareNames("ÉCRAN", "écran"), 0);
    EXPECT_LT(compareNames("Mail", "Maps"), 0);
    EXPECT_LT(compareNames("Map", "Maps"), 0);
}

TEST(AppRows, RunningAppsThenTheExcludedOnesThatAreNot) {
    ShellWorld w;
    w.desk.addApp({10, "Safari", "com.apple.Safari"});
    w.desk.addApp({11, "mail", "com.apple.mail"});
    w.desk.addApp({12, "Helper", "com.example.helper", AppKind::accessory});
    w.desk.addApp({13, "No Bundle"});
    w.desk.addApp({14, "Tarnwick Beta", "app.tarnwick.Tarnwick"}); // ourselves, another build
    w.desk.addApp({15, "Xcode", "com.apple.dt.Xcode"});
    w.desk.quitApp(15); // installed, not running
    auto& ws = w.desk.workspace();
    auto& files = w.desk.files();

    auto rows = appRows(
        ws, files, {"com.gone.Thing", "com.apple.Safari", "com.apple.dt.Xcode", "com.gone.Thing"});
    EXPECT_EQ(rows, (std::vector<AppRow>{
                        {"com.gone.Thing", "com.gone.Thing", ""},
                        {"com.apple.mail", "mail", "app:com.apple.mail"},
                        {"com.apple.Safari", "Safari", "app:com.apple.Safari"},
                        {"com.apple.dt.Xcode", "Xcode", "file:/Applications/Xcode.app"},
                    }));
}

TEST(AppRows, EqualNamesKeepTheirFirstOrder) {
    ShellWorld w;
    w.desk.addApp({10, "Notes", "com.b.notes"});
    w.desk.addApp({11, "notes", "com.a.notes"});
    auto rows = appRows(w.desk.workspace(), w.desk.files(), {"Notes"});
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].bundle, "com.b.notes");
    EXPECT_EQ(rows[1].bundle, "com.a.notes");
    EXPECT_EQ(rows[2].bundle, "Notes");
}
