#include "setup/Setup.h"

#include "tests/setup/SetupWorld.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::setuptest::SetupWorld;
using Step = SetupModel::Step;
using Events = std::vector<std::string>;

TEST(Setup, StandardizedPathsCompareOneSpellingOfALocation) {
    const std::pair<const char*, const char*> cases[] = {
        {"/Applications/Tarnwick.app", "/Applications/Tarnwick.app"},
        {"/Applications//Tarnwick.app/", "/Applications/Tarnwick.app"},
        {"/Users/me/./Applications/x/../Tarnwick.app", "/Users/me/Applications/Tarnwick.app"},
        {"/../a/b/../../c", "/c"},
        {"a/../../b", "../b"},
        {"/", "/"},
        {"//", "/"},
        {"", ""},
    };
    for (const auto& [in, want] : cases)
        EXPECT_EQ(standardizedPath(in), want) << in;
}

TEST(Setup, OnlyABundleInsideAnApplicationsFolderIsInstalled) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"/Applications/Tarnwick.app", "/Users/me", true},
        {"/Users/me/Applications/Tarnwick.app", "/Users/me", true},
        {"/Users/me/Applications/Tarnwick.app", "/Users/me/", true},
        {"/Applications Extra/Tarnwick.app", "/Users/me", false},
        {"/Users/me/ApplicationsOld/Tarnwick.app", "/Users/me", false},
        {"/Users/other/Applications/Tarnwick.app", "/Users/me", false},
        {"/Users/me/Downloads/Tarnwick.app", "/Users/me", false},
        // A translocated copy made from the system folder still is not installed.
        {"/private/var/folders/x/AppTranslocation/ABC/d/Applications/Tarnwick.app", "/Users/me",
         false},
        {"/Applications/x/AppTranslocation/Tarnwick.app", "/Users/me", false},
    };
    for (const auto& [bundle, home, want] : cases) {
        SetupWorld w;
        w.bundle = bundle;
        w.home = home;
        EXPECT_EQ(tarnwick::Setup(w.setupPorts()).isInApplications(), want)
            << bundle << " home " << home;
    }
}

TEST(Setup, NeedsTheFirstStepStillOpenInOrder) {
    struct Case {
        const char* bundle;
        bool skipMove, trusted, askedLogin, loginEnabled;
        std::optional<Step> want;
    };
    const char* outside = "/Users/me/Downloads/Tarnwick.app";
    const char* inside = "/Applications/Tarnwick.app";
    const Case cases[] = {
        {outside, false, false, false, false, Step::move},
        {outside, false, true, true, true, Step::move},
        {outside, true, false, false, false, Step::permission},
        {inside, false, false, true, true, Step::permission},
        {inside, false, true, false, false, Step::login},
        // Answered once, never asked again, even though nothing was registered.
        {inside, false, true, true, false, std::nullopt},
        {inside, false, true, false, true, std::nullopt},
        {outside, true, true, true, false, std::nullopt},
    };
    for (const auto& c : cases) {
        SetupWorld w;
        w.bundle = c.bundle;
        w.trusted = c.trusted;
        w.loginEnabled = c.loginEnabled;
        if (c.skipMove) w.user["setup.skipMove"] = true;
        if (c.askedLogin) w.user["setup.askedLogin"] = "YES"; // coerced as the store reads it
        auto got = tarnwick::Setup(w.setupPorts()).needs();
        EXPECT_EQ(got, c.want) << c.bundle << " skip " << c.skipMove << " trusted " << c.trusted
                               << " asked " << c.askedLogin << " enabled " << c.loginEnabled;
    }
}

TEST(Setup, MoveCopiesClearsQuarantineAndTrashesTheLaunchedCopy) {
    SetupWorld w;
    w.bundle = "/private/var/folders/x/AppTranslocation/ABC/d/Tarnwick.app";
    w.original = "/Users/me/Downloads/Tarnwick.app";
    auto moved = tarnwick::Setup(w.setupPorts()).moveToApplications();
    EXPECT_EQ(moved.destination, "/Applications/Tarnwick.app");
    EXPECT_EQ(w.events, (Events{
                            "copy " + w.bundle + " /Applications/Tarnwick.app",
                            "exec /usr/bin/xattr -dr com.apple.quarantine "
                            "/Applications/Tarnwick.app (wait)",
                            "trash /Users/me/Downloads/Tarnwick.app",
                        }));
}

TEST(Setup, MoveIntoTheUserFolderReplacingAnOlderCopy) {
    SetupWorld w;
    w.bundle = "/Users/me/Downloads/Tarnwick.app";
    w.writable["/Applications"] = false;
    w.present["/Users/me/Applications/Tarnwick.app"] = true;
    auto moved = tarnwick::Setup(w.setupPorts()).moveToApplications();
    EXPECT_EQ(moved.destination, "/Users/me/Applications/Tarnwick.app");
    EXPECT_EQ(w.events, (Events{
                            "mkdir /Users/me/Applications",
                            "trash /Users/me/Applications/Tarnwick.app",
                            "copy /Users/me/Downloads/Tarnwick.app "
                            "/Users/me/Applications/Tarnwick.app",
                            "exec /usr/bin/xattr -dr com.apple.quarantine "
                            "/Users/me/Applications/Tarnwick.app (wait)",
                            "trash /Users/me/Downloads/Tarnwick.app",
                        }));
}

TEST(Setup, MoveLeavesTheCopyAloneWhenTheOriginalIsTheDestination) {
    for (const char* original : {"/Applications/Tarnwick.app", "/Applications//./Tarnwick.app/"}) {
        SetupWorld w;
        w.bundle = "/private/var/folders/x/AppTranslocation/ABC/d/Tarnwick.app";
        w.original = original;
        EXPECT_TRUE(tarnwick::Setup(w.setupPorts()).moveToApplications().destination);
        EXPECT_EQ(w.events.size(), 2u) << original; // the copy and the quarantine removal
    }
    // A translocated copy whose origin cannot be told trashes nothing either.
    SetupWorld w;
    w.bundle = "/private/var/folders/x/AppTranslocation/ABC/d/Tarnwick.app";
    EXPECT_TRUE(tarnwick::Setup(w.setupPorts()).moveToApplications().destination);
    EXPECT_EQ(w.events.size(), 2u);
}

TEST(Setup, MoveStopsAtTheFirstFailureAndIgnoresALostOriginal) {
    struct Case {
        const char* op;
        size_t eventsBeforeStop;
    };
    // Not writable, an older copy present: mkdir, trash, copy, exec in that order.
    for (const auto& c : {Case{"mkdir", 1}, Case{"trash", 2}, Case{"copy", 3}, Case{"exec", 4}}) {
        SetupWorld w;
        w.bundle = "/Users/me/Downloads/Tarnwick.app";
        w.writable["/Applications"] = false;
        w.present["/Users/me/Applications/Tarnwick.app"] = true;
        w.failNext[c.op] = "The disk is full.";
        auto moved = tarnwick::Setup(w.setupPorts()).moveToApplications();
        EXPECT_FALSE(moved.destination) << c.op;
        EXPECT_EQ(moved.failure, "The disk is full.") << c.op;
        EXPECT_EQ(w.events.size(), c.eventsBeforeStop) << c.op;
    }
    SetupWorld w;
    w.bundle = "/Users/me/Downloads/Tarnwick.app";
    w.failNext["trash"] = "Locked.";
    EXPECT_EQ(tarnwick::Setup(w.setupPorts()).moveToApplications().destination,
              "/Applications/Tarnwick.app");
}

TEST(Setup, RelaunchAlwaysEndsTheProcess) {
    for (bool shellFails : {false, true}) {
        SetupWorld w;
        if (shellFails) w.failNext["exec"] = "No shell.";
        tarnwick::Setup(w.setupPorts()).relaunch("/Applications/Tarnwick.app");
        EXPECT_EQ(w.events.back(), "quit");
        EXPECT_EQ(w.events.front().rfind("exec /bin/sh -c sleep 1; /usr/bin/open \"$0\" "
                                         "/Applications/Tarnwick.app",
                                         0),
                  0u);
        EXPECT_EQ(w.events.front().find("(wait)"), std::string::npos);
    }
}

TEST(Setup, TakesOverOnlyFromOtherCopiesOfItself) {
    SetupWorld w;
    w.addApp(500, "app.tarnwick.Tarnwick"); // this process
    w.addApp(501, "app.tarnwick.Tarnwick");
    w.addApp(502, "com.example.Other");
    w.addApp(503, std::nullopt);
    w.addApp(504, "app.tarnwick.Tarnwick");
    tarnwick::Setup(w.setupPorts()).takeOverFromOtherCopies();
    EXPECT_EQ(w.events, (Events{"terminate 501", "terminate 504"}));

    // Without an identifier of our own nothing is ours to end.
    w.events.clear();
    w.bundleId.reset();
    tarnwick::Setup(w.setupPorts()).takeOverFromOtherCopies();
    EXPECT_TRUE(w.events.empty());
}

TEST(Setup, LoginAnswerCountsEvenWhenTheServiceRefuses) {
    SetupWorld w;
    tarnwick::Setup setup(w.setupPorts());
    setup.setLogin(false); // nothing registered: unregistering is still an answer
    EXPECT_EQ(w.user["setup.askedLogin"], true);
    w.failNext["login"] = "Operation not permitted";
    setup.setLogin(true);
    EXPECT_EQ(
        w.events,
        (Events{"login unregister", "defaults setup.askedLogin true", "login register failed",
                "log Launch at login: Operation not permitted", "defaults setup.askedLogin true"}));
    EXPECT_EQ(setup.needs(), std::nullopt);
}

TEST(Setup, ResetsOnlyAnUntrustedApprovalOfItsOwnIdentifier) {
    SetupWorld w;
    tarnwick::Setup setup(w.setupPorts());
    setup.resetOwnPermission(); // trusted
    w.trusted = false;
    w.bundleId = "";
    setup.resetOwnPermission();
    w.bundleId.reset();
    setup.resetOwnPermission();
    EXPECT_TRUE(w.events.empty());
    w.bundleId = "app.tarnwick.Tarnwick";
    w.failNext["exec"] = "missing";
    setup.resetOwnPermission(); // a failure is absorbed
    setup.resetOwnPermission();
    EXPECT_EQ(w.events, (Events{"exec /usr/bin/tccutil reset Accessibility app.tarnwick.Tarnwick "
                                "(wait) failed",
                                "exec /usr/bin/tccutil reset Accessibility app.tarnwick.Tarnwick "
                                "(wait)"}));
}
