#include "setup/SetupModel.h"

#include "setup/Setup.h"
#include "tests/setup/SetupWorld.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::setuptest::SetupWorld;
using Step = SetupModel::Step;
using Events = std::vector<std::string>;

namespace {

struct ModelWorld : SetupWorld {
    Setup setup{setupPorts()};
    std::shared_ptr<SetupModel> start(Step step) {
        return SetupModel::create(modelPorts(), setup, step);
    }
};

} // namespace

TEST(SetupModel, RawValuesOutsideTheStepsGiveNoStep) {
    EXPECT_EQ(SetupModel::stepFromRaw(0), Step::move);
    EXPECT_EQ(SetupModel::stepFromRaw(3), Step::done);
    EXPECT_EQ(SetupModel::stepFromRaw(4), std::nullopt);
    EXPECT_EQ(SetupModel::stepFromRaw(-1), std::nullopt);
}

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
        ModelWorld w;
        w.trusted = c.trusted;
        w.loginEnabled = c.loginEnabled;
        if (c.askedLogin) w.user["setup.askedLogin"] = true;
        auto m = w.start(c.from);
        int told = 0;
        auto sub = m->observe([&] { ++told; });
        m->advance();
        EXPECT_EQ(m->step(), c.want) << rawValue(c.from) << " trusted " << c.trusted;
        EXPECT_EQ(m->stepAnimation(), SetupModel::stepSpring);
        EXPECT_EQ(told, 1);
    }
}

TEST(SetupModel, ApprovalInEffectAdvancesOnTheFirstPoll) {
    ModelWorld w;
    auto m = w.start(Step::permission);
    w.runFor(0.999);
    EXPECT_EQ(m->step(), Step::permission);
    w.runFor(0.001);
    EXPECT_EQ(m->step(), Step::login);
}

TEST(SetupModel, ARefusedApprovalRelaunchesAfterMoreThanThreeSeconds) {
    ModelWorld w;
    w.bundle = "/Users/me/Applications/Tarnwick.app";
    w.probeAnswer = axAPIDisabled;
    auto m = w.start(Step::permission);
    w.runFor(1);
    EXPECT_EQ(m->trustedSince(), 1.0);
    w.runFor(3); // three seconds since it was first seen: still its grace
    EXPECT_TRUE(w.events.empty());
    EXPECT_EQ(m->trustedSince(), 1.0);
    w.runFor(1);
    EXPECT_EQ(w.events, (Events{"exec /bin/sh -c sleep 1; /usr/bin/open \"$0\" "
                                "/Users/me/Applications/Tarnwick.app",
                                "quit"}));
    EXPECT_EQ(m->step(), Step::permission);
}

TEST(SetupModel, WithdrawnTrustStartsTheGraceOver) {
    ModelWorld w;
    w.probeAnswer = axAPIDisabled;
    auto m = w.start(Step::permission);
    w.runFor(3);
    w.trusted = false;
    w.runFor(1);
    EXPECT_FALSE(m->trusted());
    EXPECT_EQ(m->trustedSince(), std::nullopt);
    w.trusted = true;
    w.runFor(4); // seen again at 5: nothing before 8 has passed more than 3 s
    EXPECT_EQ(m->trustedSince(), 5.0);
    EXPECT_TRUE(w.events.empty());
    // Any answer but the refusal counts, an error of another kind included.
    w.probeAnswer = axCannotComplete;
    w.runFor(1);
    EXPECT_EQ(m->step(), Step::login);
    EXPECT_TRUE(w.events.empty());
}

TEST(SetupModel, OtherStepsNeitherProbeNorRelaunch) {
    ModelWorld w;
    w.probeAnswer = axAPIDisabled;
    auto m = w.start(Step::login);
    w.runFor(10);
    EXPECT_EQ(w.probes, 0);
    EXPECT_EQ(m->trustedSince(), std::nullopt);
    EXPECT_TRUE(w.events.empty());
}

TEST(SetupModel, RequestingPermissionPromptsAndOpensTheSettingsLater) {
    ModelWorld w;
    w.trusted = false;
    auto m = w.start(Step::permission);
    m->requestPermission();
    EXPECT_TRUE(m->asked());
    EXPECT_EQ(w.events, (Events{"exec /usr/bin/tccutil reset Accessibility app.tarnwick.Tarnwick "
                                "(wait)",
                                "prompt"}));
    w.runFor(0.399);
    EXPECT_EQ(w.events.size(), 2u);
    w.runFor(0.001);
    EXPECT_EQ(w.events.back(), "open settings:accessibility");
}

TEST(SetupModel, MoveRelaunchesTheCopyOrShowsWhyNot) {
    ModelWorld w;
    w.bundle = "/Users/me/Downloads/Tarnwick.app";
    w.failNext["copy"] = "The volume is read-only.";
    auto m = w.start(Step::move);
    m->moveToApplications();
    EXPECT_EQ(m->step(), Step::move);
    EXPECT_EQ(m->error(), "Couldn't move it: The volume is read-only. Drag Tarnwick into "
                          "Applications yourself, then open it from there.");
    w.events.clear();
    m->moveToApplications();
    EXPECT_EQ(w.events.back(), "quit");
    EXPECT_EQ(w.events[w.events.size() - 2],
              "exec /bin/sh -c sleep 1; /usr/bin/open \"$0\" /Applications/Tarnwick.app");
}

TEST(SetupModel, ReleasingTheModelStopsItsPoll) {
    ModelWorld w;
    w.probeAnswer = axAPIDisabled;
    std::weak_ptr<SetupModel> weak;
    {
        auto m = w.start(Step::permission);
        weak = m;
        w.runFor(2);
        EXPECT_EQ(w.probes, 2);
    }
    EXPECT_TRUE(weak.expired());
    w.runFor(10);
    EXPECT_EQ(w.probes, 2);
    EXPECT_TRUE(w.events.empty());
}
