#include "platform/sim/scenario/Scenario.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace tarnwick::sim;

namespace {

struct Played {
    Outcome outcome;
    std::vector<std::string> lines; // the transcript, without dumps
};

Played play(const std::string& text) {
    Runtime rt;
    Played p{tarnwick::sim::play("t.scn", parseScenario("t.scn", text), rt), {}};
    std::istringstream in(rt.transcript.text());
    for (std::string line; std::getline(in, line);)
        p.lines.push_back(line);
    return p;
}

// The transcript lines whose word (after the time) is `word`.
std::vector<std::string> linesOf(const Played& p, const std::string& word) {
    std::vector<std::string> out;
    for (const auto& l : p.lines) {
        const auto start = l.find(' ') + 1;
        if (l.compare(start, word.size() + 1, word + " ") == 0) out.push_back(l);
    }
    return out;
}

const std::string untrusted = "trust no\nlaunch\n";

} // namespace

TEST(SetupStatements, PressingWhatIsNotThereFailsLikeACheck) {
    EXPECT_EQ(play("defaults setup.askedLogin true\nlaunch\nsetup \"Done\"\n").outcome.error,
              "t.scn:3: expected the setup window, got none");
    EXPECT_EQ(play(untrusted + "setup \"Keep it here\"\n").outcome.error,
              "t.scn:3: expected a setup button \"Keep it here\", got \"Open System Settings\"");
    auto hidden = play(untrusted + "setup closebox\nsetup closebox\n");
    EXPECT_EQ(hidden.outcome.exitCode, 1);
    EXPECT_EQ(hidden.outcome.error, "t.scn:4: expected the setup window, got none");
    EXPECT_EQ(play(untrusted + "expect setup login\n").outcome.error,
              "t.scn:3: expected setup login, got permission");
    EXPECT_THROW(parseScenario("t.scn", "launch\nexpect setup later\n"), ParseError);
}

TEST(SetupStatements, SettingsPageOpensAfterThePrompt) {
    auto p = play(untrusted + "setup \"Open System Settings\"\nwait 1\n");
    ASSERT_EQ(p.outcome.exitCode, 0) << p.outcome.error;
    const std::vector<std::string> want{
        "0.000 exec /usr/bin/tccutil reset Accessibility app.tarnwick.Tarnwick",
        "0.000 trust prompt",
        "0.400 open x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility",
    };
    std::vector<std::string> got;
    for (const auto& w : {"exec", "trust", "open"})
        for (const auto& l : linesOf(p, w))
            got.push_back(l);
    EXPECT_EQ(got, want);
}

TEST(SetupStatements, RefusedApprovalRelaunchesOnTheFirstPollPastThreeSeconds) {
    auto p = play(untrusted + "setup \"Open System Settings\"\nwait 0.5\ntrust yes\n"
                              "probe refused\nwait 10\n");
    EXPECT_EQ(p.outcome.exitCode, 0) << p.outcome.error;
    ASSERT_GE(p.lines.size(), 2u);
    EXPECT_EQ(p.lines[p.lines.size() - 2],
              "5.000 exec /bin/sh -c \"sleep 1; /usr/bin/open \\\"$0\\\"\" "
              "/Applications/Tarnwick.app");
    EXPECT_EQ(p.lines.back(), "5.000 quit");
}

TEST(SetupStatements, MoveFromADownloadEndsInTheRelaunchedCopy) {
    auto p = play("bundle \"/private/var/folders/x/AppTranslocation/ABC/d/Tarnwick.app\"\n"
                  "original \"/Users/me/Downloads/Tarnwick.app\"\n"
                  "exists \"/Users/me/Downloads/Tarnwick.app\"\n"
                  "exists \"/Applications/Tarnwick.app\"\n"
                  "launch\nsetup \"Move to Applications\"\n");
    EXPECT_EQ(p.outcome.exitCode, 0) << p.outcome.error;
    const std::vector<std::string> want{
        "0.000 file trash \"/Applications/Tarnwick.app\"",
        "0.000 file copy \"/private/var/folders/x/AppTranslocation/ABC/d/Tarnwick.app\" "
        "\"/Applications/Tarnwick.app\"",
        "0.000 exec /usr/bin/xattr -dr com.apple.quarantine /Applications/Tarnwick.app",
        "0.000 file trash \"/Users/me/Downloads/Tarnwick.app\"",
        "0.000 exec /bin/sh -c \"sleep 1; /usr/bin/open \\\"$0\\\"\" /Applications/Tarnwick.app",
        "0.000 quit",
    };
    ASSERT_GE(p.lines.size(), want.size());
    EXPECT_EQ(
        std::vector<std::string>(p.lines.end() - static_cast<long>(want.size()), p.lines.end()),
        want);
}

TEST(SetupStatements, RefusedLoginItemIsLoggedAndStillAnswered) {
    auto p = play("launch\nfail login \"Operation not permitted\"\nsetup \"Open at login\"\n"
                  "expect setup done\nexpect defaults setup.askedLogin true\n");
    EXPECT_EQ(p.outcome.exitCode, 0) << p.outcome.error;
    EXPECT_EQ(linesOf(p, "log"),
              std::vector<std::string>{"0.000 log Launch at login: Operation not permitted"});
}
