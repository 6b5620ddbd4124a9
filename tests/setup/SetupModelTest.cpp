#include "setup/SetupModel.h"

#include "tests/setup/SetupWorld.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::setuptest::SetupWorld;
using Step = SetupModel::Step;
using Lines = std::vector<std::string>;

namespace {

const std::string relaunchLine =
    " exec /bin/sh -c \"sleep 1; /usr/bin/open \\\"$0\\\"\" /Applications/Tarnwick.app";

} // namespace

TEST(SetupModel, AdvanceSkipsWhatIsNoLongerNeeded) {
    struct Case {
        Step from;
        bool trusted, askedLogin, loginEnabled;
        Step want;
    };
    const Case cases[] = {
        // Untrusted leaves the move for the permission, whatever the login item says.
        {Step::move, false, false, true, Step::permission},
        {Step::move, true, false, false, Step::login},
        {Step::move, true, true, false, Step::done},
        {Step::move, true, false, true, Step::done},
        {Step::permission, true, false, false, Step::login},
        {Step::permission, true, true, false, Step::done},
        {Step::login, true, false, false, Step::done},
        {Step::done, false, false, false, Step::done},
    };
    for (const auto& c : cases) {
        SetupWorld w;
        w.desk.setTrusted(c.trusted);
        w.desk.setLoginEnabled(c.loginEnabled);
        if (c.askedLogin) w.desk.storeUserDefault("setup.askedLogin", true);
        auto m = w.model(c.from);
        int told = 0;
        auto sub = m->observe([&] { ++told; });
        m->advance();
        EXPECT_EQ(m->step(), c.want) << rawValue(c.from) << " trusted " << c.trusted;
        EXPECT_EQ(m->stepAnimation(), SetupModel::stepSpring);
        EXPECT_EQ(told, 1);
    }
}

TEST(SetupModel, ApprovalInEffectAdvancesOnTheFirstPoll) {
    SetupWorld w;
    auto m = w.model(Step::permission);
    w.wait(0.999);
    EXPECT_EQ(m->step(), Step::permission);
    w.wait(0.001);
    EXPECT_EQ(m->step(), Step::login);
}

TEST(SetupModel, ARefusedApprovalRelaunchesAfterMoreThanThreeSeconds) {
    SetupWorld w;
    w.desk.setProbeAnswers(false);
    auto m = w.model(Step::permission);
    w.wait(1);
    EXPECT_EQ(m->trustedSince(), 1.0);
    w.wait(3); // three seconds since it was first seen: still its grace
    EXPECT_EQ(w.did(), Lines{});
    w.wait(10);
    EXPECT_EQ(w.did(), (Lines{"5.000" + relaunchLine, "5.000 quit"}));
}

TEST(SetupModel, WithdrawnTrustStartsTheGraceOver) {
    SetupWorld w;
    w.desk.setProbeAnswers(false);
    auto m = w.model(Step::permission);
    w.wait(3);
    w.desk.setTrusted(false);
    w.wait(1);
    EXPECT_FALSE(m->trusted());
    EXPECT_EQ(m->trustedSince(), std::nullopt);
    w.desk.setTrusted(true);
    w.wait(4); // seen again at 5: nothing before 8 is more than 3 s later
    EXPECT_EQ(m->trustedSince(), 5.0);
    w.desk.setProbeAnswers(true);
    w.wait(1);
    EXPECT_EQ(m->step(), Step::login);
    EXPECT_EQ(w.did(), Lines{});
}

TEST(SetupModel, OtherStepsWaitForNothing) {
    SetupWorld w;
    w.desk.setProbeAnswers(false);
    auto m = w.model(Step::login);
    w.wait(10);
    EXPECT_EQ(m->trustedSince(), std::nullopt);
    EXPECT_EQ(w.did(), Lines{});
}

TEST(SetupModel, RequestingPermissionPromptsAndOpensTheSettingsLater) {
    SetupWorld w;
    w.desk.setTrusted(false);
    auto m = w.model(Step::permission);
    m->requestPermission();
    EXPECT_TRUE(m->asked());
    w.wait(0.399);
    EXPECT_EQ(w.did(),
              (Lines{"0.000 exec /usr/bin/tccutil reset Accessibility app.tarnwick.Tarnwick",
                     "0.000 trust prompt"}));
    w.wait(0.001);
    EXPECT_EQ(w.did(), Lines{"0.400 open "
                             "x-apple.systempreferences:com.apple.preference.security?Privacy_"
                             "Accessibility"});
}

TEST(SetupModel, MoveRelaunchesTheCopyOrShowsWhyNot) {
    SetupWorld w;
    w.desk.setBundlePath("/Users/me/Downloads/Tarnwick.app");
    w.desk.failNext(sim::SimControl::Operation::copy, "The volume is read-only.");
    auto m = w.model(Step::move);
    m->moveToApplications();
    EXPECT_EQ(m->step(), Step::move);
    EXPECT_EQ(m->error(), "Couldn't move it: The volume is read-only. Drag Tarnwick into "
                          "Applications yourself, then open it from there.");
    w.did();
    m->moveToApplications();
    auto did = w.did();
    ASSERT_GE(did.size(), 2u);
    EXPECT_EQ(did[did.size() - 2], "0.000" + relaunchLine);
    EXPECT_EQ(did.back(), "0.000 quit");
}
