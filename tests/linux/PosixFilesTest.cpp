#include "platform/linux/PosixFiles.h"

#include "TempDir.h"
#include "XdgSandbox.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace tarnwick;
using tarnwick::test::readFile;
using tarnwick::test::TempDir;
using tarnwick::test::writeFile;
using tarnwick::test::xdgSandbox;
namespace fs = std::filesystem;

TEST(PosixFiles, CreatesFoldersWithTheirParents) {
    TempDir tmp;
    PosixFiles files;
    EXPECT_EQ(files.createDirectory(tmp / "a/b/c"), std::nullopt);
    EXPECT_TRUE(fs::is_directory(tmp / "a/b/c"));
    EXPECT_TRUE(files.isWritable(tmp / "a/b/c"));
    EXPECT_EQ(files.createDirectory(tmp / "a/b/c"), std::nullopt); // already there

    writeFile(tmp / "file", "");
    auto error = files.createDirectory(tmp / "file/sub");
    ASSERT_TRUE(error);
    EXPECT_NE(error->find(tmp / "file/sub"), std::string::npos) << *error;
    error = files.createDirectory(tmp / "file"); // a file where the folder should be
    ASSERT_TRUE(error);
    EXPECT_FALSE(files.isWritable(tmp / "missing"));
}

TEST(PosixFiles, CopiesATreeWhole) {
    TempDir tmp;
    fs::create_directories(tmp / "App/bin");
    writeFile(tmp / "App/bin/app", "#!/bin/sh\n");
    fs::permissions(tmp / "App/bin/app", fs::perms::owner_all | fs::perms::group_read);
    writeFile(tmp / "App/readme", "hello");
    fs::create_symlink("bin/app", tmp / "App/run");
    PosixFiles files;

    EXPECT_EQ(files.copy(tmp / "App", tmp / "Copy"), std::nullopt);
    EXPECT_EQ(readFile(tmp / "Copy/readme"), "hello");
    EXPECT_EQ(fs::status(tmp / "Copy/bin/app").permissions(),
              fs::perms::owner_all | fs::perms::group_read);
    EXPECT_EQ(fs::read_symlink(tmp / "Copy/run"), "bin/app");

    // An existing destination is left alone; nothing half-made is left beside it.
    writeFile(tmp / "App/readme", "changed");
    auto error = files.copy(tmp / "App", tmp / "Copy");
    ASSERT_TRUE(error);
    EXPECT_NE(error->find(tmp / "Copy"), std::string::npos) << *error;
    EXPECT_EQ(readFile(tmp / "Copy/readme"), "hello");
    EXPECT_TRUE(files.copy(tmp / "Missing", tmp / "Other"));
    EXPECT_TRUE(files.copy(tmp / "App", tmp / "no/such/folder/Copy"));
    int entries = 0;
    for ([[maybe_unused]] const auto& e : fs::directory_iterator(tmp.path()))
        ++entries;
    EXPECT_EQ(entries, 2); // App and Copy
}

TEST(PosixFiles, TrashKeepsTheFileInTheUsersTrash) {
    // The test program's XDG_DATA_HOME is on the temp folder's file system.
    TempDir tmp;
    writeFile(tmp / "old copy", "x");
    PosixFiles files;
    EXPECT_EQ(files.trash(tmp / "old copy"), std::nullopt);
    EXPECT_FALSE(files.exists(tmp / "old copy"));
    EXPECT_EQ(readFile(xdgSandbox() + "/data/Trash/files/old copy"), "x");

    auto error = files.trash(tmp / "never there");
    ASSERT_TRUE(error);
    EXPECT_NE(error->find("never there"), std::string::npos) << *error;
}

TEST(PosixFiles, NamesAndPresence) {
    TempDir tmp;
    writeFile(tmp / "Résumé.txt", "");
    fs::create_symlink(tmp / "gone", tmp / "dangling");
    PosixFiles files;
    EXPECT_EQ(files.displayName(tmp / "Résumé.txt"), "Résumé.txt");
    EXPECT_EQ(files.displayName("/no/such/place/Tarnwick"), "Tarnwick");
    EXPECT_EQ(files.displayName(tmp.path() + "/"), fs::path(tmp.path()).filename().string());
    EXPECT_TRUE(files.exists(tmp / "dangling"));
    EXPECT_FALSE(files.exists(tmp / "gone"));
}
