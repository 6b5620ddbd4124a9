#include "setup/Setup.h"

#include "tests/setup/SetupWorld.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::setuptest::SetupWorld;
using Step = SetupModel::Step;
using Lines = std::vector<std::string>;
using Op = sim::SimControl::Operation;

namespace {

const char* translocated = "/private/var/folders/x/AppTranslocation/ABC/d/Tarnwick.app";
const char* downloaded = "/Users/me/Downloads/Tarnwick.app";

} // namespace

TEST(Setup, StandardizedPathsCompareOneSpellingOfALocation) {
    const std::pair<const char*, const char*> cases[] = {
        {"/Applications//Tarnwick.app/", "/Applications/Tarnwick.app"},
        {"/Users/me/./Applications/x/../Tarnwick.app", "/Users/me/Applications/Tarnwick.app"},
        {"/../a/b/../../c", "/c"},
        {"a/../../b", "../b"},
        {"//", "/"},
        {"", ""},
    };
    for (const auto& [in, want] : cases)
        EXPECT_EQ(standardizedPath(in), want) << in;
}

TEST(Setup, OnlyABundleInsideAnApplicationsFolderIsInstalled) {
    const std::pair<const char*, bool> cases[] = {
        {"/Applications/Tarnwick.app", true},
        {"/Users/me/Applications/Tarnwick.app", true},
        {"/Applications Extra/Tarnwick.app", false},
        {"/Users/other/Applications/Tarnwick.app", false},
        {downloaded, false},
        // Made from a copy in the system folder, and still not installed.
        {"/private/var/folders/x/AppTranslocation/ABC/d/Applications/Tarnwick.app", false},
    };
    for (const auto& [bundle, want] : cases) {
        SetupWorld w;
        w.desk.setBundlePath(bundle);
        EXPECT_EQ(w.setup.isInApplications(), want) << bundle;
    }
}

TEST(Setup, NeedsTheFirstStepStillOpenInOrder) {
    struct Case {
        const char* bundle;
        bool skipMove, trusted, askedLogin, loginEnabled;
        std::optional<Step> want;
    };
    const char* inside = "/Applications/Tarnwick.app";
    const Case cases[] = {
        {downloaded, false, false, false, false, Step::move},
        {downloaded, false, true, true, true, Step::move},
        {downloaded, true, false, false, false, Step::permission},
        {inside, false, false, true, true, Step::permission},
        {inside, false, true, false, false, Step::login},
        // Answered once, never asked again, even though nothing was registered.
        {inside, false, true, true, false, std::nullopt},
        {inside, false, true, false, true, std::nullopt},
    };
    for (const auto& c : cases) {
        SetupWorld w;
        w.desk.setBundlePath(c.bundle);
        w.desk.setTrusted(c.trusted);
        w.desk.setLoginEnabled(c.loginEnabled);
        if (c.skipMove) w.desk.storeUserDefault("setup.skipMove", true);
        if (c.askedLogin) w.desk.storeUserDefault("setup.askedLogin", "YES"); // read leniently
        EXPECT_EQ(w.setup.needs(), c.want)
            << c.bundle << " skip " << c.skipMove << " trusted " << c.trusted << " asked "
            << c.askedLogin << " enabled " << c.loginEnabled;
    }
}

TEST(Setup, MoveReplacesAnOlderCopyAndTrashesTheLaunchedOne) {
    SetupWorld w;
    w.desk.setBundlePath(translocated);
    w.desk.setOriginal(downloaded);
    w.desk.addPath("/Applications/Tarnwick.app");
    EXPECT_EQ(w.setup.moveToApplications().destination, "/Applications/Tarnwick.app");
    EXPECT_EQ(w.did(), (Lines{
                           "0.000 file trash \"/Applications/Tarnwick.app\"",
                           "0.000 file copy \"" + std::string(translocated) +
                               "\" \"/Applications/Tarnwick.app\"",
                           "0.000 exec /usr/bin/xattr -dr com.apple.quarantine "
                           "/Applications/Tarnwick.app",
                           "0.000 file trash \"/Users/me/Downloads/Tarnwick.app\"",
                       }));
}

TEST(Setup, MoveGoesToTheUserFolderWhenTheSystemOneIsClosed) {
    SetupWorld w;
    w.desk.setBundlePath(downloaded);
    w.desk.setWritable("/Applications", false);
    EXPECT_EQ(w.setup.moveToApplications().destination, "/Users/me/Applications/Tarnwick.app");
    const auto did = w.did();
    ASSERT_EQ(did.size(), 4u);
    EXPECT_EQ(did[0], "0.000 file mkdir \"/Users/me/Applications\"");
    EXPECT_EQ(did[3], "0.000 file trash \"/Users/me/Downloads/Tarnwick.app\"");
}

TEST(Setup, MoveTrashesNothingWhenTheLaunchedCopyIsTheDestination) {
    // The translocation lookup answers the destination itself, or cannot answer at all.
    for (std::optional<std::string> original :
         {std::optional<std::string>("/Applications//./Tarnwick.app/"),
          std::optional<std::string>()}) {
        SetupWorld w;
        w.desk.setBundlePath(translocated);
        w.desk.world().original = original;
        EXPECT_TRUE(w.setup.moveToApplications().destination);
        EXPECT_EQ(w.did().size(), 2u) << original.value_or("none"); // copy, quarantine
    }
}

TEST(Setup, MoveStopsAtTheFirstFailureButNotForTheLaunchedCopy) {
    // Not writable, an older copy present: mkdir, trash, copy, exec in that order.
    const std::pair<Op, size_t> cases[] = {
        {Op::mkdir, 1}, {Op::trash, 2}, {Op::copy, 3}, {Op::exec, 4}};
    for (const auto& [op, linesBeforeStop] : cases) {
        SetupWorld w;
        w.desk.setBundlePath(downloaded);
        w.desk.setWritable("/Applications", false);
        w.desk.addPath("/Users/me/Applications/Tarnwick.app");
        w.desk.failNext(op, "The disk is full.");
        auto moved = w.setup.moveToApplications();
        EXPECT_FALSE(moved.destination);
        EXPECT_EQ(moved.failure, "The disk is full.");
        EXPECT_EQ(w.did().size(), linesBeforeStop) << moved.failure;
    }
    SetupWorld w;
    w.desk.setBundlePath(downloaded);
    w.desk.setWritable("/Users/me/Downloads", false); // the download cannot be trashed
    EXPECT_EQ(w.setup.moveToApplications().destination, "/Applications/Tarnwick.app");
}

TEST(Setup, TakesOverOnlyFromOtherCopiesOfItself) {
    SetupWorld w;
    w.desk.addCopy(501);
    w.desk.addApp({.pid = 502, .name = "Other", .bundle = "com.example.Other"});
    w.desk.addApp({.pid = 503, .name = "Nameless"});
    w.desk.addCopy(504);
    w.setup.takeOverFromOtherCopies();
    EXPECT_EQ(w.did(), (Lines{"0.000 terminate 501", "0.000 terminate 504"}));
}

TEST(Setup, LoginAnswerCountsEvenWhenTheServiceRefuses) {
    SetupWorld w;
    w.setup.setLogin(false); // nothing registered: still an answer
    w.desk.failNextLogin("Operation not permitted");
    w.setup.setLogin(true);
    EXPECT_EQ(w.did(), (Lines{"0.000 defaults setup.askedLogin true",
                              "0.000 log Launch at login: Operation not permitted",
                              "0.000 defaults setup.askedLogin true"}));
    EXPECT_EQ(w.setup.needs(), std::nullopt);
}

TEST(Setup, ResetsOnlyAnUntrustedApprovalOfItsOwnIdentifier) {
    SetupWorld w;
    w.setup.resetOwnPermission(); // trusted
    w.desk.setTrusted(false);
    w.desk.setOwnBundle(""); // the tool would forget every application's approval
    w.setup.resetOwnPermission();
    EXPECT_EQ(w.did(), Lines{});
    w.desk.setOwnBundle("app.tarnwick.Tarnwick");
    w.desk.failNext(Op::exec, "missing");
    w.setup.resetOwnPermission();
    w.setup.resetOwnPermission();
    EXPECT_EQ(w.did(),
              (Lines{"0.000 exec-failed /usr/bin/tccutil reset Accessibility app.tarnwick.Tarnwick "
                     "\"missing\"",
                     "0.000 exec /usr/bin/tccutil reset Accessibility app.tarnwick.Tarnwick"}));
}
