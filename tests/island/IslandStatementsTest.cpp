#include "platform/sim/scenario/Scenario.h"

#include <gtest/gtest.h>

using namespace tarnwick::sim;

namespace {

// A laptop with a notch, a monitor and two windows on the laptop; the rest
// of the scenario follows.
Outcome play(const std::string& rest) {
    const std::string text = "defaults setup.askedLogin true\n"
                             "screen 1 \"Built-in\" 0,0,1512,982 builtin notch=200,32\n"
                             "screen 2 \"Studio\" 1512,0,2560,1440\n"
                             "app 10 \"Mail\" bundle=com.apple.mail\n"
                             "window 10 \"Inbox\" 100,100,800,600\n"
                             "window 10 \"Sent\" 120,120,800,600\n"
                             "launch\n" +
                             rest;
    Runtime rt;
    return tarnwick::sim::play("t.scn", parseScenario("t.scn", text), rt);
}

} // namespace

TEST(IslandStatements, ActingOnAnIslandThatIsNotThereFailsLikeACheck) {
    auto none = play("island toggle 1\n");
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_EQ(none.error, "t.scn:8: expected an island, got none");

    auto tucked = play("do chooseWindows\nisland close\n");
    EXPECT_EQ(tucked.error, "t.scn:9: expected the island's chooser, got a tucked island");

    auto announcing = play("do preview connect\nwait 0.05\nisland all\n");
    EXPECT_EQ(announcing.error, "t.scn:10: expected the island's chooser, got announce(connected)");

    auto beyond = play("do chooseWindows\nwait 0.05\nisland toggle 3\n");
    EXPECT_EQ(beyond.error, "t.scn:10: expected row 3 of the island's list, got 2 rows");

    auto elsewhere = play("do chooseWindows\nwait 0.05\nisland retarget \"Nowhere\"\n");
    EXPECT_EQ(elsewhere.error, "t.scn:10: expected a destination named \"Nowhere\", got none");
}

TEST(IslandStatements, ChecksSayWhatTheIslandShowsInstead) {
    EXPECT_EQ(play("expect island choosing\n").error,
              "t.scn:8: expected island choosing, got none");
    auto row = play("do chooseWindows\nwait 0.05\nisland toggle 2\n"
                    "expect island line row 2 \"Mail\" \"Sent\" ticked\n");
    EXPECT_EQ(row.error, "t.scn:11: expected island row 2 \"Mail\" \"Sent\" ticked, got row 1 "
                         "\"Mail\" \"Inbox\" ticked");
    // Escapes in the scenario and UTF-8 in the island are the same text.
    EXPECT_EQ(play("do chooseWindows\nwait 0.05\n"
                   "expect island text \"Finding windows\\u2026\"\n")
                  .error,
              "t.scn:10: expected island text \"Finding windows…\", got text \"Move windows\"");
    EXPECT_EQ(play("do chooseWindows\nwait 0.05\nexpect island line button \"Move "
                   "selected (2)\" enabled opacity=1\n")
                  .exitCode,
              0);
}
