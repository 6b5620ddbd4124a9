// tarnwick-sim: plays a scenario on the simulated desktop and prints what the
// program did.
#include "platform/sim/scenario/Scenario.h"

#include <csignal>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <unistd.h>

namespace {

void crashed(int sig) {
    const char* msg = "tarnwick-sim: the program under test crashed (";
    (void)!write(2, msg, std::strlen(msg));
    const char* name = sig == SIGSEGV   ? "SIGSEGV"
                       : sig == SIGABRT ? "SIGABRT"
                       : sig == SIGFPE  ? "SIGFPE"
                                        : "signal";
    (void)!write(2, name, std::strlen(name));
    (void)!write(2, ")\n", 2);
    _exit(3);
}

int usage() {
    std::cerr << "usage: tarnwick-sim [--shots DIR] FILE   (FILE may be - for standard input)\n";
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::string file;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--shots") {
            if (++i >= argc) return usage(); // pictures arrive with the views
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

    std::stringstream text;
    if (file == "-") {
        text << std::cin.rdbuf();
    } else {
        std::ifstream in(file, std::ios::binary);
        if (!in) {
            std::cerr << file << ":0: cannot read the file: " << std::strerror(errno) << "\n";
            return 2;
        }
        text << in.rdbuf();
    }

    std::vector<tarnwick::sim::Statement> statements;
    try {
        statements = tarnwick::sim::parseScenario(file, text.str());
    } catch (const tarnwick::sim::ParseError& e) {
        std::cerr << e.what() << "\n";
        return 2;
    }

    for (int sig : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS, SIGILL})
        std::signal(sig, crashed);
    tarnwick::sim::Outcome outcome;
    {
        tarnwick::sim::Runtime runtime(stdout);
        outcome = tarnwick::sim::play(file, statements, runtime);
    }
    std::fflush(stdout);
    if (!outcome.error.empty()) std::cerr << outcome.error << "\n";
    return outcome.exitCode;
}
