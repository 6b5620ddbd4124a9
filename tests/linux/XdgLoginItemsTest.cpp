#include "platform/linux/XdgLoginItems.h"

#include "TempDir.h"

#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

using namespace tarnwick;
using tarnwick::test::readFile;
using tarnwick::test::TempDir;
using tarnwick::test::writeFile;
namespace fs = std::filesystem;

TEST(XdgLoginItems, RegisteringWritesAnEntryTheDesktopStartsAsIs) {
    TempDir tmp;
    // Spaces and shell characters in the path must survive the entry's quoting.
    std::string exec = tmp / "My Apps/$tarnwick \"beta\"/tarnwick";
    fs::create_directories(fs::path(exec).parent_path());
    writeFile(exec, "#!/bin/sh\ntouch \"$(dirname \"$0\")/started\"\n");
    fs::permissions(exec, fs::perms::owner_all);

    XdgLoginItems login(tmp / "config", exec);
    EXPECT_FALSE(login.enabled());
    EXPECT_EQ(login.registerApp(), std::nullopt);
    EXPECT_TRUE(login.enabled());
    EXPECT_EQ(login.entryPath(), tmp / "config/autostart/tarnwick.desktop");

    // Started the way the session starts it, the entry runs exactly our program.
    GDesktopAppInfo* info = g_desktop_app_info_new_from_filename(login.entryPath().c_str());
    ASSERT_TRUE(info) << readFile(login.entryPath());
    EXPECT_STREQ(g_app_info_get_name(G_APP_INFO(info)), "Tarnwick");
    GError* error = nullptr;
    EXPECT_TRUE(g_app_info_launch(G_APP_INFO(info), nullptr, nullptr, &error))
        << (error ? error->message : "");
    g_clear_error(&error);
    g_object_unref(info);
    std::string started = fs::path(exec).parent_path() / "started";
    for (int i = 0; i < 250 && !fs::exists(started); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_TRUE(fs::exists(started)) << readFile(login.entryPath());
    EXPECT_NE(readFile(login.entryPath()).find("X-GNOME-Autostart-enabled=true"),
              std::string::npos);

    // Registering twice replaces the entry; unregistering twice is no error.
    EXPECT_EQ(login.registerApp(), std::nullopt);
    EXPECT_EQ(login.unregisterApp(), std::nullopt);
    EXPECT_FALSE(login.enabled());
    EXPECT_FALSE(fs::exists(login.entryPath()));
    EXPECT_EQ(login.unregisterApp(), std::nullopt);
}

TEST(XdgLoginItems, AnEntrySwitchedOffInTheSessionSettingsIsNotEnabled) {
    for (std::string off : {"Hidden=true\n", "X-GNOME-Autostart-enabled=false\n"}) {
        SCOPED_TRACE(off);
        TempDir tmp;
        XdgLoginItems login(tmp.path(), "/usr/bin/tarnwick");
        fs::create_directories(tmp / "autostart");
        writeFile(login.entryPath(), "[Desktop Entry]\nType=Application\nExec=tarnwick\n" + off);
        EXPECT_FALSE(login.enabled());
        // Registering again is how the user turns it back on.
        EXPECT_EQ(login.registerApp(), std::nullopt);
        EXPECT_TRUE(login.enabled());
    }
}

TEST(XdgLoginItems, FailuresComeBackAsTextNamingThePath) {
    TempDir tmp;
    writeFile(tmp / "file", "");
    XdgLoginItems blocked(tmp / "file", "/usr/bin/tarnwick"); // autostart cannot be made
    auto error = blocked.registerApp();
    ASSERT_TRUE(error);
    EXPECT_NE(error->find(tmp / "file"), std::string::npos) << *error;
    EXPECT_FALSE(blocked.enabled());

    XdgLoginItems login(tmp.path(), "/usr/bin/tarnwick");
    fs::create_directories(login.entryPath() + "/inside"); // a folder where the entry goes
    error = login.unregisterApp();
    ASSERT_TRUE(error);
    EXPECT_NE(error->find(login.entryPath()), std::string::npos) << *error;
}
