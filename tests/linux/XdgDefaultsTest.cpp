#include "platform/linux/XdgDefaults.h"

#include "RecordingLog.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <clocale>
#include <sys/stat.h>
#include <thread>

using namespace tarnwick;
using nlohmann::json;
using tarnwick::test::readFile;
using tarnwick::test::RecordingLog;
using tarnwick::test::TempDir;
using tarnwick::test::writeFile;
namespace fs = std::filesystem;

namespace {

std::vector<std::string> corruptFiles(const std::string& dir) {
    std::vector<std::string> found;
    for (const auto& e : fs::directory_iterator(dir))
        if (e.path().filename().string().starts_with("defaults.json.corrupt-"))
            found.push_back(e.path().string());
    return found;
}

std::string nested(int levels) {
    // An object holding arrays: `levels` containers in all.
    return "{\"a\": " + std::string(levels - 1, '[') + std::string(levels - 1, ']') + "}";
}

} // namespace

TEST(XdgDefaults, ValuesSurviveARestartWithTheirTypes) {
    TempDir tmp;
    std::string dir = tmp / "config/tarnwick"; // neither folder exists yet
    RecordingLog log;
    json layouts = json::binary({0x00, 0xff, 0x10, 0x80, 0x7f});
    json nestedValue = {{"window", {{"frame", {10, 20.5, 300, 400}}, {"title", "Ünïcode"}}},
                        {"empty", json::object()}};
    {
        XdgDefaults d(dir, log);
        d.set("layouts.v2", layouts);
        d.set("placement", nestedValue);
        d.set("enabled", true);
        d.set("chime", "connect");
        d.set("doomed", 1);
        d.remove("doomed");
        d.set("short", json::binary({0x41})); // base64 with two padding characters
    }
    XdgDefaults again(dir, log);
    ASSERT_TRUE(again.object("layouts.v2"));
    EXPECT_TRUE(again.object("layouts.v2")->is_binary());
    EXPECT_EQ(*again.object("layouts.v2"), layouts);
    EXPECT_EQ(*again.object("short"), json::binary({0x41}));
    EXPECT_EQ(*again.object("placement"), nestedValue);
    EXPECT_EQ(*again.object("enabled"), true);
    EXPECT_EQ(*again.object("chime"), "connect");
    EXPECT_FALSE(again.object("doomed"));
    EXPECT_TRUE(log.lines().empty());

    struct stat st {};
    ASSERT_EQ(::stat((dir + "/defaults.json").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    ASSERT_EQ(::stat(dir.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0700u);
}

TEST(XdgDefaults, UserValuesHideRegisteredOnesUntilRemoved) {
    TempDir tmp;
    RecordingLog log;
    XdgDefaults d(tmp.path(), log);
    d.registerDefaults({{"mode", "ask"}});
    EXPECT_EQ(*d.object("mode"), "ask");
    d.set("mode", "always");
    EXPECT_EQ(*d.object("mode"), "always");
    d.remove("mode");
    EXPECT_EQ(*d.object("mode"), "ask");
    // Registration is never stored.
    EXPECT_EQ(json::parse(readFile(tmp / "defaults.json")), json::object());
}

TEST(XdgDefaults, AnUnreadableFileIsKeptAsideAndTheDefaultsAnswer) {
    for (std::string bad : {std::string("{\"mode\": \"always\""), std::string("[1, 2]"),
                            std::string("\"text\""), std::string(""), nested(65),
                            // The parser stops at a NUL: what follows it would be lost.
                            std::string("{\"mode\":\"always\"}\0{\"rest\":1}", 28)}) {
        SCOPED_TRACE(bad.substr(0, 40));
        TempDir tmp;
        writeFile(tmp / "defaults.json", bad);
        RecordingLog log;
        XdgDefaults d(tmp.path(), log);
        d.registerDefaults({{"mode", "ask"}});
        EXPECT_EQ(*d.object("mode"), "ask");
        EXPECT_FALSE(d.object("a"));
        ASSERT_EQ(log.lines().size(), 1u);

        auto aside = corruptFiles(tmp.path());
        ASSERT_EQ(aside.size(), 1u);
        EXPECT_EQ(readFile(aside[0]), bad);
        // YYYYmmddTHHMMSSZ
        std::string stamp = fs::path(aside[0]).filename().string().substr(22);
        EXPECT_EQ(stamp.size(), 16u);
        EXPECT_EQ(stamp[8], 'T');
        EXPECT_EQ(stamp.back(), 'Z');

        // Saving afterwards starts a new file and leaves the user's old one alone.
        d.set("mode", "never");
        EXPECT_EQ(readFile(aside[0]), bad);
        EXPECT_EQ(json::parse(readFile(tmp / "defaults.json")), json({{"mode", "never"}}));
    }
}

TEST(XdgDefaults, NestingUpToTheLimitIsRead) {
    TempDir tmp;
    writeFile(tmp / "defaults.json", nested(XdgDefaults::maxDepth));
    RecordingLog log;
    XdgDefaults d(tmp.path(), log);
    EXPECT_TRUE(d.object("a"));
    EXPECT_TRUE(corruptFiles(tmp.path()).empty());
    EXPECT_TRUE(log.lines().empty());
}

TEST(XdgDefaults, StoringTheSameValueAgainTouchesNoDisk) {
    TempDir tmp;
    RecordingLog log;
    XdgDefaults d(tmp.path(), log);
    json snapshot = json::binary(std::vector<std::uint8_t>(1000, 7));
    d.set("layouts.v2", snapshot);
    d.set("count", 3);
    struct stat before {};
    ASSERT_EQ(::stat((tmp / "defaults.json").c_str(), &before), 0);

    d.set("layouts.v2", json::binary(std::vector<std::uint8_t>(1000, 7)));
    d.set("count", 3);
    d.remove("never-set");
    struct stat after {};
    ASSERT_EQ(::stat((tmp / "defaults.json").c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(after.st_mtim.tv_sec, before.st_mtim.tv_sec);

    d.set("count", 4);
    ASSERT_EQ(::stat((tmp / "defaults.json").c_str(), &after), 0);
    EXPECT_NE(after.st_ino, before.st_ino);
}

TEST(XdgDefaults, TheBackupHoldsThePreviousDocument) {
    TempDir tmp;
    RecordingLog log;
    XdgDefaults d(tmp.path(), log);
    d.set("mode", "ask");
    d.set("mode", "always");
    EXPECT_EQ(json::parse(readFile(tmp / "defaults.json~")), json({{"mode", "ask"}}));
    EXPECT_EQ(json::parse(readFile(tmp / "defaults.json")), json({{"mode", "always"}}));
}

TEST(XdgDefaults, AFailedWriteIsLoggedAndTheValueStillChanges) {
    TempDir tmp;
    writeFile(tmp / "plain-file", "x");
    RecordingLog log;
    XdgDefaults d(tmp / "plain-file/tarnwick", log); // a folder that cannot be made
    d.set("mode", "always");
    EXPECT_EQ(*d.object("mode"), "always");
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_NE(log.lines()[0].find("plain-file"), std::string::npos) << log.lines()[0];
}

TEST(XdgDefaults, ThreadsWritingAtOnceLoseNothing) {
    TempDir tmp;
    RecordingLog log;
    {
        XdgDefaults d(tmp.path(), log);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&d, t] {
                for (int i = 0; i < 10; ++i) {
                    d.set("key" + std::to_string(t) + "." + std::to_string(i), i);
                    d.object("key0.0");
                }
            });
        for (auto& th : threads)
            th.join();
    }
    XdgDefaults again(tmp.path(), log);
    for (int t = 0; t < 4; ++t)
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(again.object("key" + std::to_string(t) + "." + std::to_string(i)), json(i));
    EXPECT_TRUE(log.lines().empty());
}

TEST(XdgDefaults, NumbersReadTheSameUnderACommaLocale) {
    TempDir tmp;
    writeFile(tmp / "defaults.json", "{\"scale\": 2.5}");
    std::string previous = std::setlocale(LC_ALL, nullptr);
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) GTEST_SKIP() << "no de_DE.UTF-8 locale here";
    RecordingLog log;
    XdgDefaults d(tmp.path(), log);
    auto scale = d.object("scale");
    d.set("ratio", 0.75);
    std::string written = readFile(tmp / "defaults.json");
    std::setlocale(LC_ALL, previous.c_str());
    ASSERT_TRUE(scale);
    EXPECT_EQ(*scale, 2.5);
    EXPECT_NE(written.find("0.75"), std::string::npos) << written;
}
