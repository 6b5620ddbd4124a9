#include "platform/linux/DesktopEntries.h"

#include "TempDir.h"
#include "XdgSandbox.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

using namespace tarnwick;
using tarnwick::test::TempDir;
using tarnwick::test::writeFile;
using tarnwick::test::xdgSandbox;
namespace fs = std::filesystem;

namespace {

// Written whole and renamed into place, so GIO never reads half an entry.
void install(const std::string& folder, const std::string& file, const std::string& body) {
    std::string dir = xdgSandbox() + "/" + folder + "/applications";
    writeFile(dir + "/." + file, "[Desktop Entry]\nType=Application\n" + body);
    fs::rename(dir + "/." + file, dir + "/" + file);
}

// GIO notices new files through a file monitor on its own thread; a question
// asked before it has may still get the old answer.
bool eventually(DesktopEntries& entries, const std::function<bool()>& check) {
    auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (std::chrono::steady_clock::now() < until) {
        entries.reload();
        if (check()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

class DesktopEntriesTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        install("system", "org.example.Scribble.desktop",
                "Name=Scribble\nIcon=scribble\nExec=true %F\nStartupWMClass=Scribble\n");
        install("system", "scribble.desktop", "Name=Scribble Classic\nExec=true\n");
        install("system", "Terminal-Emu.desktop",
                "Name=Terminal\nIcon=/icons/term.png\nExec=true\n");
        install("data", "org.example.Helper.desktop", "Name=Helper\nExec=true\nNoDisplay=true\n");
    }
    void SetUp() override {
        ASSERT_TRUE(
            eventually(entries, [&] { return entries.byId("org.example.Helper").has_value(); }));
    }
    DesktopEntries entries;
};

} // namespace

TEST_F(DesktopEntriesTest, FindsAnEntryByIdWithOrWithoutItsSuffix) {
    auto scribble = entries.byId("org.example.Scribble.desktop");
    ASSERT_TRUE(scribble);
    EXPECT_EQ(scribble->id, "org.example.Scribble");
    EXPECT_EQ(scribble->name, "Scribble");
    EXPECT_EQ(scribble->icon, "scribble");
    EXPECT_EQ(scribble->filename,
              xdgSandbox() + "/system/applications/org.example.Scribble.desktop");
    EXPECT_EQ(entries.byId("Terminal-Emu")->icon, "/icons/term.png");
    EXPECT_FALSE(entries.byId("org.example"));
    EXPECT_FALSE(entries.byId(""));
    EXPECT_FALSE(entries.byId(".desktop"));
}

TEST_F(DesktopEntriesTest, MatchesAWindowClassFromTheSurestRuleDown) {
    struct Case {
        std::string instance, wmClass;
        std::optional<std::string> id;
    } cases[] = {
        // StartupWMClass beats an id that merely spells the same class.
        {"scribble", "Scribble", "org.example.Scribble"},
        {"Scribble", "scribble-x", "org.example.Scribble"}, // by the instance
        {"", "SCRIBBLE", "scribble"},                       // an id, ignoring case
        {"terminal-emu", "XTerm", "Terminal-Emu"},
        {"helper", "Helper", "org.example.Helper"}, // the id's last part; NoDisplay counts
        {"", "", std::nullopt},
        {"nothing", "Nothing", std::nullopt},
        {"example", "Example", std::nullopt}, // only the last part of an id counts
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.instance + " " + c.wmClass);
        auto e = entries.byWmClass(c.instance, c.wmClass);
        EXPECT_EQ(e ? std::optional(e->id) : std::nullopt, c.id);
    }
}

TEST_F(DesktopEntriesTest, FindsTheEntryThatStartsAProgramThroughLinks) {
    TempDir tmp;
    fs::create_directories(tmp / "opt/tool");
    writeFile(tmp / "opt/tool/tool", "#!/bin/sh\n");
    fs::permissions(tmp / "opt/tool/tool", fs::perms::owner_all);
    fs::create_directory_symlink(tmp / "opt/tool", tmp / "link");
    install("data", "tool.desktop", "Name=Tool\nExec=" + tmp / "opt/tool/tool" + " --new %U\n");

    ASSERT_TRUE(
        eventually(entries, [&] { return entries.byExecutable(tmp / "link/tool").has_value(); }));
    EXPECT_EQ(entries.byExecutable(tmp / "link/tool")->id, "tool");
    EXPECT_FALSE(entries.byExecutable(tmp / "opt"));
    EXPECT_FALSE(entries.byExecutable(tmp / "missing"));
    fs::remove(xdgSandbox() + "/data/applications/tool.desktop");
}

// An application installed while the program runs: its windows were keyed by
// their class while it had no entry, and by its desktop id from then on (as
// after a restart), with no one calling reload().
TEST_F(DesktopEntriesTest, AnApplicationInstalledLaterIsKnownByItsDesktopId) {
    EXPECT_FALSE(entries.byWmClass("quill", "Quill"));
    EXPECT_FALSE(entries.byId("org.example.Quill"));
    install("data", "org.example.Quill.desktop",
            "Name=Quill\nExec=true\nStartupWMClass=quill-editor\n");
    auto keyed = [&] {
        auto e = entries.byWmClass("quill-editor", "Quill-editor");
        return e && e->id == "org.example.Quill";
    };
    auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!keyed() && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(keyed()) << "the new entry was never read";
    ASSERT_TRUE(entries.byId("org.example.Quill"));
    EXPECT_EQ(entries.byId("org.example.Quill")->name, "Quill");
    // Entries found are kept: a question that finds one reads no folder.
    EXPECT_EQ(entries.byWmClass("scribble", "Scribble")->id, "org.example.Scribble");
    fs::remove(xdgSandbox() + "/data/applications/org.example.Quill.desktop");
}

TEST_F(DesktopEntriesTest, AnswersThreadsAskingAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> found = 0;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                if (i % 5 == 0) entries.reload();
                if (entries.byWmClass("scribble", "Scribble")) ++found;
            }
        });
    for (auto& th : threads)
        th.join();
    EXPECT_EQ(found, 80);
}
