// tarnwick: the program in a user's desktop session. It picks the platform
// it runs on (--platform, or what the session is) and hands over to it: the
// X server with --platform x11 (the default where DISPLAY is set), or a
// scenario played on the simulated desktop with --platform sim (the built-in
// demo unless a file is named).
#include "platform/x11/X11Program.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace {

constexpr const char* usageText =
    R"(usage: tarnwick [--platform x11|sim] [SWITCH] [FILE.scn]

Moves other applications' windows onto a display when it connects, and puts
them back where they were when a display setup returns.

  --platform x11   run on this X11 desktop (the default when DISPLAY is set)
  --platform sim   play a scenario on the simulated desktop (the default
                   without a display): FILE.scn, or the built-in demo
  --settings       open the settings window at start
  --choose         open the window chooser at start
  --preview-connect, --preview-disconnect
                   show the island's announcement once
  --no-notch       treat every screen as having no camera housing
  --help, --version
)";

std::string executablePath(const char* argv0) {
    std::error_code ec;
    auto path = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::string(argv0) : path.string();
}

// Sounds and the demo lie under the installed prefix's share folder, or in
// the checkout the program was built from.
std::vector<std::string> dataDirs(const std::string& executable, const std::string& installed,
                                  const std::string& source) {
    const auto dir = std::filesystem::path(executable).parent_path();
    return {(dir / "../share/tarnwick" / installed).lexically_normal().string(),
            std::string(TARNWICK_SOURCE_DIR) + "/" + source};
}

int runSimulated(const std::string& executable, const std::vector<std::string>& files) {
    const auto dir = std::filesystem::path(executable).parent_path();
    std::vector<std::string> candidates = {(dir / "tarnwick-sim").string(),
                                           (dir / "../libexec/tarnwick/tarnwick-sim").string()};
    std::string scenario = files.empty() ? "" : files.front();
    if (scenario.empty())
        for (const auto& d : dataDirs(executable, "demo", "demo"))
            if (std::filesystem::exists(d + "/plug-and-unplug.scn")) {
                scenario = d + "/plug-and-unplug.scn";
                break;
            }
    for (const auto& runner : candidates)
        if (::access(runner.c_str(), X_OK) == 0) {
            execl(runner.c_str(), runner.c_str(), scenario.c_str(), static_cast<char*>(nullptr));
            break;
        }
    std::cerr << "tarnwick: the simulated desktop (tarnwick-sim) is not installed\n";
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv, argv + argc);
    std::string platform;
    std::vector<std::string> files;
    for (size_t i = 1; i < args.size(); ++i) {
        const auto& a = args[i];
        if (a == "--help" || a == "-h") {
            std::cout << usageText;
            return 0;
        }
        if (a == "--version") {
            std::cout << "tarnwick " << TARNWICK_VERSION << "\n";
            return 0;
        }
        if (a == "--platform") {
            if (i + 1 >= args.size()) {
                std::cerr << "tarnwick: --platform needs x11 or sim\n" << usageText;
                return 2;
            }
            platform = args[++i];
            if (platform != "x11" && platform != "sim") {
                std::cerr << "tarnwick: unknown platform \"" << platform << "\"\n" << usageText;
                return 2;
            }
        } else if (a.rfind("--", 0) != 0) {
            files.push_back(a);
        } else if (a != "--settings" && a != "--choose" && a != "--preview-connect" &&
                   a != "--preview-disconnect" && a != "--no-notch") {
            std::cerr << "tarnwick: unknown option " << a << "\n" << usageText;
            return 2;
        }
    }
    const auto executable = executablePath(argv[0]);
    const char* display = std::getenv("DISPLAY");
    if (platform.empty()) platform = display && *display ? "x11" : "sim";
    if (platform == "sim") return runSimulated(executable, files);

    return tarnwick::x11::run(argv, args, executable,
                              dataDirs(executable, "sounds", "resources/sounds"));
}
