#include "platform/sim/scenario/Scenario.h"

#include <gtest/gtest.h>

using namespace tarnwick::sim;

namespace {

std::string errorOf(const std::string& text) {
    Runtime rt;
    return play("t.scn", parseScenario("t.scn", text), rt).error;
}

const std::string untrusted = "trust no\nlaunch\n";

} // namespace

TEST(SetupStatements, PressingWhatIsNotThereFailsLikeACheck) {
    EXPECT_EQ(errorOf("defaults setup.askedLogin true\nlaunch\nsetup \"Done\"\n"),
              "t.scn:3: expected the setup window, got none");
    EXPECT_EQ(errorOf(untrusted + "setup \"Keep it here\"\n"),
              "t.scn:3: expected a setup button \"Keep it here\", got \"Open System Settings\"");
    // A window hidden by its close button is not there to press or close.
    EXPECT_EQ(errorOf(untrusted + "setup closebox\nsetup closebox\n"),
              "t.scn:4: expected the setup window, got none");
    EXPECT_EQ(errorOf(untrusted + "expect setup login\n"),
              "t.scn:3: expected setup login, got permission");
    EXPECT_THROW(parseScenario("t.scn", "launch\nexpect setup later\n"), ParseError);
}
