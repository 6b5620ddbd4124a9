#include "XdgSandbox.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tarnwick::test {

namespace {

std::string root;

class Sandbox : public ::testing::Environment {
  public:
    void SetUp() override {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "tarnwick-xdg-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
        // The folders exist before GIO first looks, so it watches them for changes.
        std::filesystem::create_directories(root + "/data/applications");
        std::filesystem::create_directories(root + "/system/applications");
        std::filesystem::create_directories(root + "/config");
        ::setenv("XDG_DATA_HOME", (root + "/data").c_str(), 1);
        ::setenv("XDG_DATA_DIRS", (root + "/system").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (root + "/config").c_str(), 1);
        // ALSA reads this file again whenever it changes, so a test can
        // capture what is played without touching the environment later.
        std::ofstream(root + "/asound.conf") << "</usr/share/alsa/alsa.conf>\n";
        ::setenv("ALSA_CONFIG_PATH", (root + "/asound.conf").c_str(), 1);
    }
    void TearDown() override {
        std::error_code ec;
        std::filesystem::remove_all(root, ec);
    }
};

[[maybe_unused]] ::testing::Environment* const sandbox =
    ::testing::AddGlobalTestEnvironment(new Sandbox);

} // namespace

std::string xdgSandbox() {
    return root;
}

} // namespace tarnwick::test
