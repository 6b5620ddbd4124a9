// tarnwick-sim: plays a scenario on the simulated desktop and prints what the
// program did.
#include "platform/sim/scenario/Scenario.h"

#ifdef TARNWICK_SHOTS
#include "platform/quick/Shots.h"

#include <QApplication>
#endif

#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <unistd.h>

namespace {

// The scenario being played, for the crash report.
const char* playingFile = "-";

void say(const char* text) {
    (void)!write(2, text, std::strlen(text));
}

// Only async-signal-safe calls: the heap or the streams may be what broke.
void crashed(int sig) {
    say(playingFile);
    char digits[24];
    char* p = digits + sizeof digits;
    *--p = '\0';
    uint64_t line = static_cast<uint64_t>(tarnwick::sim::playingLine());
    do {
        *--p = static_cast<char>('0' + line % 10);
        line /= 10;
    } while (line);
    say(":");
    say(p);
    say(": the program under test crashed (");
    say(sig == SIGSEGV   ? "SIGSEGV"
        : sig == SIGABRT ? "SIGABRT"
        : sig == SIGFPE  ? "SIGFPE"
        : sig == SIGBUS  ? "SIGBUS"
        : sig == SIGILL  ? "SIGILL"
                         : "signal");
    say(")\n");
    _exit(3);
}

int usage() {
    std::cerr << "usage: tarnwick-sim [--shots DIR] FILE   (FILE may be - for standard input)\n";
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::string file, shots;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--shots") {
            if (++i >= argc) return usage();
            shots = argv[i];
        } else if (a == "-h" || a == "--help") {
            usage();
            return 0;
        } else if (file.empty()) {
            file = a;
        } else {
            return usage();
        }
    }
    if (file.empty()) return usage();

    std::vector<tarnwick::sim::Statement> statements;
    try {
        std::stringstream text;
        if (file == "-") {
            text << std::cin.rdbuf();
        } else {
            // A folder opens as a stream that reads as empty: an empty scenario.
            std::error_code ec;
            if (std::filesystem::is_directory(file, ec)) {
                std::cerr << file << ":0: cannot read the file: " << std::strerror(EISDIR) << "\n";
                return 2;
            }
            std::ifstream in(file, std::ios::binary);
            if (!in) {
                std::cerr << file << ":0: cannot read the file: " << std::strerror(errno) << "\n";
                return 2;
            }
            text << in.rdbuf();
        }
        statements = tarnwick::sim::parseScenario(file, text.str());
    } catch (const tarnwick::sim::ParseError& e) {
        std::cerr << e.what() << "\n";
        return 2;
    } catch (const std::exception& e) {
        // Only reading the whole file can get here (a file too big to hold):
        // the parser names the line of anything else.
        std::cerr << file << ":0: cannot read the file: " << e.what() << "\n";
        return 2;
    }

#ifdef TARNWICK_SHOTS
    // Pictures are drawn by the real views on Qt's offscreen platform, so
    // they need no display; without --shots Qt is never started.
    std::unique_ptr<QApplication> qt;
    int qtArgc = 1;
    if (!shots.empty()) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qt = std::make_unique<QApplication>(qtArgc, argv);
    }
#else
    if (!shots.empty())
        std::cerr << "tarnwick-sim: built without the views; no pictures are drawn\n";
#endif
    bool shotFailed = false;

    playingFile = file.c_str();
    // A stack overflow leaves no stack to report it on: the handler runs on
    // a stack of its own.
    static char altStack[64 * 1024];
    stack_t ss{};
    ss.ss_sp = altStack;
    ss.ss_size = sizeof altStack;
    sigaltstack(&ss, nullptr);
    struct sigaction sa {};
    sa.sa_handler = crashed;
    sa.sa_flags = SA_ONSTACK;
    sigemptyset(&sa.sa_mask);
    for (int sig : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL})
        sigaction(sig, &sa, nullptr);
    tarnwick::sim::Outcome outcome;
    {
        tarnwick::sim::Runtime runtime(stdout);
#ifdef TARNWICK_SHOTS
        if (qt)
            runtime.shoot = [&](const std::string& name) {
                std::string error;
                tarnwick::quick::shoot(runtime.desktop, shots, name, error);
                if (!error.empty()) {
                    std::cerr << "tarnwick-sim: " << error << "\n";
                    shotFailed = true;
                }
            };
#endif
        outcome = tarnwick::sim::play(file, statements, runtime);
    }
    std::fflush(stdout);
    if (!outcome.error.empty()) std::cerr << outcome.error << "\n";
    if (outcome.exitCode == 0 && shotFailed) return 1;
    return outcome.exitCode;
}
