#include "app/AppDelegate.h"

#include "tests/app/ShellWorld.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::shelltest::ShellWorld;

namespace {

std::optional<LaunchSwitch> switchFor(std::vector<std::string> args) {
    args.insert(args.begin(), ShellWorld::program);
    return firstSwitch(args);
}

} // namespace

TEST(LaunchSwitches, TheListOrderDecidesNotTheCommandLine) {
    EXPECT_EQ(switchFor({"--choose", "--preview-connect"}), LaunchSwitch::choose);
    EXPECT_EQ(switchFor({"--preview-disconnect", "--choose", "--settings"}),
              LaunchSwitch::settings);
    EXPECT_EQ(switchFor({"-NSDocumentRevisionsDebugMode", "YES", "--preview-disconnect"}),
              LaunchSwitch::previewDisconnect);
    // Whole arguments, exactly as written.
    EXPECT_EQ(switchFor({"--settings=1", "--Settings", "-settings", "--choose ", "settings"}),
              std::nullopt);
    // The program path is never a switch, however the binary is named.
    EXPECT_EQ(firstSwitch({"--settings"}), std::nullopt);
    EXPECT_EQ(firstSwitch({}), std::nullopt);
}

TEST(Startup, OtherCopiesAreAskedToQuitBeforeTheCoordinatorStarts) {
    ShellWorld w;
    w.desk.addCopy(500);
    w.launch();
    const auto& t = w.transcript.text();
    const auto terminate = t.find("terminate 500");
    const auto coordinator = t.find("defaults layouts removed");
    ASSERT_NE(terminate, std::string::npos) << t;
    ASSERT_NE(coordinator, std::string::npos) << t;
    EXPECT_LT(terminate, coordinator);
}

TEST(Startup, APendingSetupStepWinsOverEverySwitch) {
    ShellWorld w;
    w.desk.setTrusted(false);
    auto& app = w.launch({"--settings"});
    EXPECT_TRUE(app.setupWindow().visible());
    EXPECT_EQ(app.settingsWindowIfMade(), nullptr);
}

TEST(Startup, ReopeningBringsBackTheOneSettingsWindow) {
    ShellWorld w;
    auto& app = w.launch({"--settings", "--choose"});
    auto* settings = app.settingsWindowIfMade();
    ASSERT_NE(settings, nullptr);
    EXPECT_TRUE(settings->visible());
    const auto view = settings->view();

    // Whether or not a window is on screen, the answer leaves it to us.
    EXPECT_FALSE(app.shouldHandleReopen(true));
    EXPECT_FALSE(app.shouldHandleReopen(false));
    EXPECT_EQ(app.settingsWindowIfMade(), settings);
    EXPECT_EQ(settings->view(), view);
}

TEST(Startup, ReopenWithoutASwitchOpensSettings) {
    ShellWorld w;
    auto& app = w.launch({"--verbose"});
    EXPECT_EQ(app.settingsWindowIfMade(), nullptr);
    EXPECT_FALSE(app.shouldHandleReopen(false));
    ASSERT_NE(app.settingsWindowIfMade(), nullptr);
    EXPECT_TRUE(app.settingsWindowIfMade()->visible());
}
