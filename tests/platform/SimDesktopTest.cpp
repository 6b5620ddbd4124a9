// The parts of the simulated desktop that the core's first-run and window
// code lean on and that could quietly be wrong: the file system model, the
// end of the process, the list of running applications and our own windows.
#include "platform/sim/SimDesktop.h"

#include "platform/sim/SimEngine.h"
#include "platform/sim/SimFiles.h"
#include "platform/sim/SimProcesses.h"
#include "platform/sim/SimScreens.h"
#include "platform/sim/SimSurfaces.h"
#include "platform/sim/SimTrust.h"
#include "platform/sim/SimWindowAccess.h"
#include "platform/sim/SimWorkspace.h"
#include "platform/sim/scenario/Scenario.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using tarnwick::AppKind;
using tarnwick::AppRef;
using tarnwick::PanelPlacement;
using tarnwick::Point;
using tarnwick::Rect;
using tarnwick::WindowKind;
using tarnwick::sim::SimDesktop;
using tarnwick::sim::SimDispatch;
using tarnwick::sim::SimWorld;
using tarnwick::sim::Transcript;
using Op = SimWorld::Operation;

namespace {

struct Desk {
    SimDispatch dispatch;
    Transcript transcript{dispatch};
    SimDesktop desk{dispatch, transcript};
};

std::vector<std::string> described(const std::vector<AppRef>& apps) {
    std::vector<std::string> out;
    for (const auto& a : apps)
        out.push_back(std::to_string(a->pid) + " " + a->identifier.value_or("-") + " " + a->icon);
    return out;
}

} // namespace

TEST(SimFiles, TrashTakesAFolderWithEverythingBelowItButNothingBeside) {
    Desk d;
    d.desk.addPath("/Applications/Tarnwick.app/Contents/MacOS/Tarnwick");
    d.desk.addPath("/Applications/Tarnwick.app Old");
    d.desk.addPath("/Applications/Tarnwick.apple");
    auto& files = d.desk.files();

    EXPECT_EQ(files.trash("/Applications/Tarnwick.app/"), std::nullopt);
    EXPECT_FALSE(files.exists("/Applications/Tarnwick.app"));
    EXPECT_FALSE(files.exists("/Applications/Tarnwick.app/Contents/MacOS"));
    EXPECT_TRUE(files.exists("/Applications/Tarnwick.app Old"));
    EXPECT_TRUE(files.exists("/Applications/Tarnwick.apple"));
    EXPECT_TRUE(files.exists("/Applications")); // the folder it lay in stays
    EXPECT_TRUE(files.trash("/Applications/Tarnwick.app").has_value()); // gone already
}

TEST(SimFiles, AScheduledFailureHitsTheNextSuchOperationOnly) {
    Desk d;
    auto& files = d.desk.files();
    d.desk.failNext(Op::copy, "The volume is full.");

    EXPECT_EQ(files.createDirectory("/Users/me/Applications"), std::nullopt); // not a copy
    EXPECT_EQ(files.copy("/Applications/Tarnwick.app", "/Users/me/Applications/Tarnwick.app"),
              "The volume is full.");
    EXPECT_FALSE(files.exists("/Users/me/Applications/Tarnwick.app")); // nothing half-done
    EXPECT_EQ(files.copy("/Applications/Tarnwick.app", "/Users/me/Applications/Tarnwick.app"),
              std::nullopt);
    EXPECT_TRUE(files.exists("/Users/me/Applications/Tarnwick.app"));
    EXPECT_EQ(d.transcript.text(),
              "0.000 file mkdir \"/Users/me/Applications\"\n"
              "0.000 file copy \"/Applications/Tarnwick.app\" "
              "\"/Users/me/Applications/Tarnwick.app\" failed \"The volume is full.\"\n"
              "0.000 file copy \"/Applications/Tarnwick.app\" "
              "\"/Users/me/Applications/Tarnwick.app\"\n");
}

TEST(SimFiles, RefusesWhatTheFileManagerRefuses) {
    Desk d;
    auto& files = d.desk.files();
    d.desk.setBundlePath("/Users/me/Downloads/Tarnwick.app");
    d.desk.addPath("/Applications/Tarnwick.app/Contents/Info.plist"); // an older copy
    d.desk.setWritable("/Library", false);

    // Onto something that exists: the caller has to trash it first.
    EXPECT_TRUE(
        files.copy("/Users/me/Downloads/Tarnwick.app", "/Applications/Tarnwick.app").has_value());
    ASSERT_EQ(files.trash("/Applications/Tarnwick.app"), std::nullopt);
    EXPECT_EQ(files.copy("/Users/me/Downloads/Tarnwick.app", "/Applications/Tarnwick.app"),
              std::nullopt);
    EXPECT_FALSE(files.exists("/Applications/Tarnwick.app/Contents/Info.plist")); // not revived

    EXPECT_TRUE(files.copy("/Users/me/Nowhere.app", "/Users/me/Else.app").has_value()); // no source
    EXPECT_TRUE(files.createDirectory("/Library/Tarnwick/Cache").has_value());
    EXPECT_FALSE(files.exists("/Library/Tarnwick"));
    EXPECT_EQ(files.createDirectory("/Users/me/a/b/c"), std::nullopt); // parents too
    EXPECT_TRUE(files.exists("/Users/me/a/b"));
}

TEST(SimFiles, WritableFollowsTheNearestFolderSaidAbout) {
    Desk d;
    auto& files = d.desk.files();
    d.desk.addPath("/Applications/Utilities");
    d.desk.addPath("/Users/me/Downloads");
    d.desk.addPath("/opt/tools");
    EXPECT_TRUE(files.isWritable("/Applications/Utilities"));
    EXPECT_TRUE(files.isWritable("/Users/me/Downloads"));
    EXPECT_FALSE(files.isWritable("/opt/tools"));
    EXPECT_FALSE(files.isWritable("/Users/me/Missing")); // nothing there to write in

    d.desk.setWritable("/Applications", false);
    EXPECT_FALSE(files.isWritable("/Applications/Utilities"));
    d.desk.setWritable("/Applications/Utilities", true);
    EXPECT_TRUE(files.isWritable("/Applications/Utilities"));
    EXPECT_FALSE(files.isWritable("/Applications"));

    d.desk.setHome("/Users/ann");
    EXPECT_TRUE(files.exists("/Users/ann"));
    EXPECT_TRUE(files.isWritable("/Users/ann"));
    EXPECT_FALSE(files.isWritable("/Users/me/Downloads")); // no longer the user's home
}

TEST(SimFiles, TheBundleMovesButADeclaredCopyStays) {
    Desk d;
    auto& files = d.desk.files();
    EXPECT_TRUE(files.exists("/Applications/Tarnwick.app"));
    d.desk.setBundlePath("/Users/me/Downloads/Tarnwick.app");
    EXPECT_FALSE(files.exists("/Applications/Tarnwick.app"));
    EXPECT_TRUE(files.exists("/Users/me/Downloads/Tarnwick.app"));

    d.desk.addPath("/Users/me/Downloads/Tarnwick.app"); // an older copy that stays behind
    d.desk.setBundlePath("/Volumes/Tarnwick/Tarnwick.app");
    EXPECT_TRUE(files.exists("/Users/me/Downloads/Tarnwick.app"));

    EXPECT_EQ(files.displayName("/Volumes/Tarnwick/Tarnwick.app/"), "Tarnwick");
    EXPECT_EQ(files.displayName("/Users/me/Downloads"), "Downloads");
}

TEST(SimProcesses, QuittingEndsTheRunThere) {
    struct Case {
        const char* what;
        void (*end)(SimDesktop&);
    };
    const std::vector<Case> cases{
        {"quit", [](SimDesktop& d) { d.processes().quit(); }},
        {"terminate of its own pid",
         [](SimDesktop& d) { d.processes().terminate(d.processes().ownPid()); }},
    };
    for (const auto& c : cases) {
        tarnwick::sim::Runtime rt;
        rt.dispatch.after(1, [&] {
            c.end(rt.desktop);
            rt.transcript.line("after", "the rest of the same work"); // never reaches the user
        });
        rt.dispatch.after(1, [&] { rt.transcript.line("later", "same instant"); });
        // The missing screen would fail the run if the player went on.
        auto statements = tarnwick::sim::parseScenario("quit.scn", "wait 2\nunplug 9\n");
        auto outcome = tarnwick::sim::play("quit.scn", statements, rt);
        EXPECT_EQ(outcome.exitCode, 0) << c.what << ": " << outcome.error;
        EXPECT_EQ(rt.transcript.text(), "1.000 quit\n") << c.what;
        EXPECT_EQ(rt.dispatch.nowMicros(), SimDispatch::micros(1)) << c.what;
    }
}

TEST(SimProcesses, StartedProgramsAndTerminateRequests) {
    Desk d;
    auto& processes = d.desk.processes();
    d.desk.addApp({10, "Notes", "com.example.notes"});
    d.desk.addWindow({.pid = 10, .title = "Draft", .frame = {0, 25, 400, 300}}, false, false);
    d.desk.addCopy(20);

    EXPECT_EQ(
        processes.run("/bin/sh", {"-c", "sleep 1; open \"$0\"", "/Applications/T.app"}, false),
        std::nullopt);
    d.desk.failNext(Op::exec, "No such file");
    EXPECT_EQ(processes.run("/usr/bin/xattr", {"-dr", ""}, true), "No such file");
    processes.terminate(20);
    processes.terminate(10);
    processes.open("x-apple.systempreferences:com.apple.preference.security");

    EXPECT_EQ(d.transcript.text(),
              "0.000 exec /bin/sh -c \"sleep 1; open \\\"$0\\\"\" /Applications/T.app\n"
              "0.000 exec-failed /usr/bin/xattr -dr \"\" \"No such file\"\n"
              "0.000 terminate 20\n"
              "0.000 terminate 10\n"
              "0.000 open x-apple.systempreferences:com.apple.preference.security\n");
    EXPECT_EQ(described(d.desk.workspace().runningApplications()),
              std::vector<std::string>{"77777 app.tarnwick.Tarnwick app:app.tarnwick.Tarnwick"});
    EXPECT_EQ(d.desk.findWindow(10, "Draft"), nullptr); // its windows went with it
}

TEST(SimWorkspace, ListsItselfAndItsCopiesAfterTheOtherApplications) {
    Desk d;
    d.desk.addCopy(30);
    d.desk.addApp({10, "Notes", "com.example.notes"});
    d.desk.addApp({11, "Helper", std::nullopt, AppKind::background});
    d.desk.setOwnBundle("org.example.tarnwick");

    const std::vector<std::string> want{"10 com.example.notes app:com.example.notes", "11 - ",
                                        "77777 org.example.tarnwick app:org.example.tarnwick",
                                        "30 org.example.tarnwick app:org.example.tarnwick"};
    EXPECT_EQ(described(d.desk.workspace().runningApplications()), want);
    // One list: the window engine's, asked where the engine runs, is the same.
    std::vector<AppRef> engines;
    d.dispatch.background(tarnwick::QoS::utility,
                          [&] { engines = d.desk.windowAccess().runningApplications(); });
    d.dispatch.runUntil(0);
    EXPECT_EQ(described(engines), want);
}

TEST(SimWorkspace, RemembersWhereApplicationsAreInstalledAfterTheyQuit) {
    Desk d;
    auto& workspace = d.desk.workspace();
    d.desk.addApp({10, "Notes", "com.example.notes"});
    d.desk.quitApp(10);
    EXPECT_EQ(workspace.applicationLocation("com.example.notes"), "/Applications/Notes.app");
    EXPECT_EQ(workspace.applicationLocation("com.example.never"), std::nullopt);
    d.desk.setBundlePath("/Users/me/Applications/Tarnwick.app");
    EXPECT_EQ(workspace.applicationLocation("app.tarnwick.Tarnwick"),
              "/Users/me/Applications/Tarnwick.app");
}

TEST(SimWindowAccess, NeitherThisProgramNorItsCopiesAreListedAsWindowed) {
    tarnwick::sim::SimEngine e;
    e.desk.addScreen({1, "Built-in", {0, 0, 1440, 900}, {0, 0, 1440, 875}, true});
    e.desk.addApp({10, "Notes", "com.example.notes"});
    e.desk.addWindow({.pid = 10, .title = "Draft", .frame = {0, 25, 400, 300}}, false, false);
    e.desk.addCopy(20);
    for (bool scanning : {true, false}) {
        e.desk.setPrivateFunctions(scanning);
        std::vector<tarnwick::AppWindow> listed;
        e.dispatch.background(tarnwick::QoS::userInitiated, [&] { listed = e.mover.windows(); });
        e.dispatch.runUntil(e.dispatch.nowMicros() + SimDispatch::micros(60));
        ASSERT_EQ(listed.size(), 1u) << scanning;
        EXPECT_EQ(listed[0].app->pid, 10) << scanning;
    }
}

// The island and our windows are placed in words; the simulated desktop
// turns them into the rectangles its transcript shows.
TEST(SimSurfaces, PlacementsLandOnTheScreenTheyName) {
    using From = PanelPlacement::From;
    Desk d;
    auto& surfaces = d.desk.surfaces();
    EXPECT_EQ(surfaces.makePanel({.size = {640, 640}}, nullptr), nullptr); // no screen at all

    d.desk.addScreen({1, "Built-in", {0, 0, 1512, 982}, {0, 0, 1512, 957}, true});
    d.desk.addScreen({7, "Left", {-2560, 100, 2560, 1440}, {-2560, 100, 2560, 1415}});
    d.desk.addScreen({9,
                      "Nameless",
                      {1512, 0, 1920, 1080},
                      {1512, 0, 1920, 1080},
                      false,
                      {},
                      /*noid*/ true});
    const auto& screens = d.desk.world().screens;
    auto frame = [&](PanelPlacement at) { return tarnwick::sim::panelFrame(screens, at); };
    // Below the top bar of a screen left of and above the primary, and at an
    // odd width: the panel may stand between points, as the presenter had it.
    EXPECT_EQ(frame({.display = 7, .from = From::usableTop, .down = 8, .size = {641, 640}}),
              (Rect{-1280 - 320.5, 100 + 1415 - 8 - 640, 641, 640}));
    // Into the housing: from the very top edge. Without a number, the primary.
    EXPECT_EQ(frame({.display = 1, .size = {640, 640}}), (Rect{436, 342, 640, 640}));
    EXPECT_EQ(frame({.size = {640, 640}}), frame({.display = 1, .size = {640, 640}}));
    // A screen that has gone, or one without a number, cannot be named.
    EXPECT_EQ(frame({.display = 3, .size = {640, 640}}), std::nullopt);
    EXPECT_EQ(frame({.display = 9, .size = {640, 640}}), std::nullopt);
    EXPECT_EQ(surfaces.makePanel({.display = 3, .size = {640, 640}}, nullptr), nullptr);

    auto window = surfaces.makeWindow(WindowKind::setup, "Welcome", nullptr);
    auto& placed = *surfaces.window(WindowKind::setup);
    window->centreOn(7);
    EXPECT_EQ(placed.origin(), (Point{-1280 - 230, 100 + 1415.0 / 2 - 210}));
    window->centreOn(3); // gone: the primary instead
    EXPECT_EQ(placed.origin(), (Point{756 - 230, 957.0 / 2 - 210}));
    EXPECT_EQ(d.transcript.text(), "");
}

TEST(SimSurfaces, OwnWindowsAreTranscribedWhenTheyAppearOrGo) {
    Desk d;
    d.desk.addScreen({1, "Built-in", {0, 0, 1512, 982}, {0, 0, 1512, 957}, true});
    auto& surfaces = d.desk.surfaces();
    auto settings = surfaces.makeWindow(WindowKind::settings, "Tarnwick Settings", nullptr);
    {
        auto setup = surfaces.makeWindow(WindowKind::setup, "Welcome", nullptr);
        setup->present();
        setup->present();                               // already in front
        surfaces.window(WindowKind::setup)->closeBox(); // the user's close button
        EXPECT_FALSE(setup->visible());
        setup->close(); // hidden already
    }
    EXPECT_EQ(surfaces.window(WindowKind::setup), nullptr); // gone with its owner

    settings->centreOn(std::nullopt);
    EXPECT_EQ(surfaces.window(WindowKind::settings)->origin(), (Point{476, 88.5}));
    settings->present();
    EXPECT_TRUE(surfaces.window(WindowKind::settings)->visible());

    auto panel = surfaces.makePanel({.display = 1, .size = {400, 50}}, nullptr);
    panel->show();
    EXPECT_EQ(surfaces.panel()->frame(), (Rect{556, 932, 400, 50}));
    panel->remove();
    EXPECT_EQ(d.transcript.text(), "0.000 window setup shown\n"
                                   "0.000 window setup hidden\n"
                                   "0.000 window settings shown\n"
                                   "0.000 island panel 556,932,400,50\n"
                                   "0.000 island panel out\n");
    EXPECT_DOUBLE_EQ(surfaces.textWidth("Caf\u00e9", 10, tarnwick::FontWeight::bold), 24);
}

TEST(SimScreensAndTrust, PointerMainScreenAndTheProbe) {
    Desk d;
    auto& screens = d.desk.screens();
    EXPECT_EQ(screens.mainScreen(), std::nullopt);
    d.desk.addScreen({1, "Built-in", {0, 0, 1512, 982}, {0, 0, 1512, 957}, true});
    d.desk.addScreen({2, "Studio", {1512, 0, 2560, 1440}, {1512, 0, 2560, 1440}});
    EXPECT_EQ(screens.mainScreen(), 0u);
    EXPECT_EQ(screens.mouseLocation(), (Point{756, 491}));
    d.desk.setMouse({2000, 700});
    EXPECT_EQ(screens.mouseLocation(), (Point{2000, 700}));

    struct Case {
        bool trusted, answers, want;
    };
    for (auto c : {Case{false, true, false}, Case{true, false, false}, Case{true, true, true},
                   Case{false, false, false}}) {
        d.desk.setTrusted(c.trusted);
        d.desk.setProbeAnswers(c.answers);
        EXPECT_EQ(d.desk.trust().answers(), c.want) << c.trusted << c.answers;
    }
    d.desk.trust().requestWithPrompt();
    EXPECT_EQ(d.transcript.text(), "0.000 trust prompt\n");
}

// The ports' thread rules hold for the whole suite only if a call on the
// wrong side really stops the run, and says which call it was.
TEST(SimThreadRules, ACallOnTheWrongThreadEndsTheRunNamingTheCall) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            tarnwick::sim::SimEngine e;
            e.mover.windows();
        },
        "WindowAccess::[A-Za-z]+ was called on the main thread");
    EXPECT_DEATH(
        {
            tarnwick::sim::SimEngine e;
            e.offMain([&] { e.desk.screens().mouseLocation(); });
        },
        "Screens::mouseLocation was called on a background thread");
    // The runner's dumps list windows at once on the main thread, which then
    // stands in for a background one.
    tarnwick::sim::SimEngine e;
    e.desk.addApp({10, "Notes", "com.example.notes"});
    e.desk.addWindow({.pid = 10, .title = "Draft", .frame = {0, 25, 400, 300}}, false, false);
    e.dispatch.setMainMayBlock(true);
    EXPECT_EQ(e.mover.windows().size(), 1u);
}
