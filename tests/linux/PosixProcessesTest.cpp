#include "platform/linux/PosixProcesses.h"

#include "RecordingLog.h"
#include "TempDir.h"

#include <QCoreApplication>
#include <QTimer>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>

using namespace tarnwick;
using tarnwick::test::RecordingLog;
using tarnwick::test::TempDir;
using tarnwick::test::writeFile;
namespace fs = std::filesystem;

extern char** environ;

namespace {

bool appears(const std::string& path, std::chrono::milliseconds within) {
    auto until = std::chrono::steady_clock::now() + within;
    while (std::chrono::steady_clock::now() < until) {
        if (fs::exists(path)) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return fs::exists(path);
}

} // namespace

TEST(PosixProcesses, RunWaitsOnlyWhenAskedAndReportsWhatCannotStart) {
    TempDir tmp;
    RecordingLog log;
    PosixProcesses processes(log);
    EXPECT_EQ(processes.run("/bin/sh", {"-c", "sleep 0.2; touch \"$0\"", tmp / "waited"}, true),
              std::nullopt);
    EXPECT_TRUE(fs::exists(tmp / "waited"));

    EXPECT_EQ(processes.run("/bin/sh", {"-c", "sleep 0.3; touch \"$0\"", tmp / "later"}, false),
              std::nullopt);
    EXPECT_FALSE(fs::exists(tmp / "later"));
    EXPECT_TRUE(appears(tmp / "later", std::chrono::seconds(5)));

    EXPECT_EQ(processes.run("/bin/false", {}, true), std::nullopt); // its status is not ours
    auto error = processes.run(tmp / "no-such-program", {}, true);
    ASSERT_TRUE(error);
    EXPECT_NE(error->find(tmp / "no-such-program"), std::string::npos) << *error;
}

TEST(PosixProcesses, TheFirstRunStepsMeanTheirLinuxCounterparts) {
    TempDir tmp;
    RecordingLog log;
    PosixProcesses processes(log);
    // Nothing to clear or reset here: success without a program to run.
    EXPECT_EQ(processes.clearDownloadMark(tmp.path()), std::nullopt);
    processes.forgetApproval("x");

    // The relaunch starts the program at the path itself, a second later.
    std::string program = tmp / "Tarnwick copy/tarnwick";
    fs::create_directories(fs::path(program).parent_path());
    writeFile(program, "#!/bin/sh\ntouch \"$0.started\"\n");
    fs::permissions(program, fs::perms::owner_all);
    auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(processes.startAfterQuit(program), std::nullopt);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_TRUE(appears(program + ".started", std::chrono::seconds(5)));
    EXPECT_TRUE(log.lines().empty());
}

TEST(PosixProcesses, TerminateAsksPolitely) {
    pid_t pid = 0;
    char sleepProgram[] = "sleep", seconds[] = "30";
    char* argv[] = {sleepProgram, seconds, nullptr};
    ASSERT_EQ(posix_spawnp(&pid, "sleep", nullptr, nullptr, argv, environ), 0);
    RecordingLog log;
    PosixProcesses processes(log);
    processes.terminate(pid);
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
    EXPECT_TRUE(log.lines().empty());
}

TEST(PosixProcesses, QuitEndsTheEventLoopAndNeverTheProcessWithoutOne) {
    RecordingLog log;
    PosixProcesses processes(log);
    processes.quit(); // no application: logged, and we are still here
    EXPECT_EQ(log.lines().size(), 1u);

    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    bool after = false;
    QTimer::singleShot(0, [&] {
        processes.quit();
        after = true; // the current work finishes before the loop ends
    });
    QTimer::singleShot(5000, [] { QCoreApplication::exit(2); });
    EXPECT_EQ(app.exec(), 0);
    EXPECT_TRUE(after);
}

TEST(PosixProcesses, AUrlNothingHandlesIsLogged) {
    RecordingLog log;
    PosixProcesses processes(log);
    processes.open("tarnwick-test-nothing-handles-this:x");
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_NE(log.lines()[0].find("tarnwick-test-nothing-handles-this:x"), std::string::npos);
}
