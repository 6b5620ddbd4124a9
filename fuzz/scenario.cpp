// Scenario text as anyone might write it: parsed, and when it parses, played
// on a fresh simulated desktop, as tarnwick-sim does.
//
// Properties:
// - a refused file says where: "FILE:LINE: what", LINE one of its lines;
// - every line of the transcript starts with its time and a word;
// - a played file ends with exit 0 (and no message), 1 or 3 (with a message
//   located at one of its statements); anything thrown out of play is a crash.
//
// Inputs whose waits add up to more than an hour of virtual time are skipped:
// the program's timers keep it busy for every simulated minute, and an
// execution must stay in milliseconds. Longer waits, and the clock's range,
// are the scenario tests' and the runner's own business.
#include "platform/sim/scenario/Scenario.h"
#include "fuzz/Check.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

using namespace tarnwick;
using tarnwick::fuzz::require;

namespace {

constexpr const char* file = "fuzz.scn";
constexpr double maxWaitSeconds = 3600;

// The line a message is located at, or 0 when it does not start "FILE:LINE: ".
int locatedLine(const std::string& message) {
    const std::string prefix = std::string(file) + ":";
    if (message.compare(0, prefix.size(), prefix) != 0) return 0;
    size_t i = prefix.size();
    int64_t line = 0;
    while (i < message.size() && message[i] >= '0' && message[i] <= '9' && line < INT32_MAX)
        line = line * 10 + (message[i++] - '0');
    if (i == prefix.size() || message.compare(i, 2, ": ") != 0 || i + 2 == message.size()) return 0;
    return static_cast<int>(line);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    // Lines as the parser counts them: a last line without its newline counts.
    const int lines = static_cast<int>(std::count(text.begin(), text.end(), '\n')) +
                      (text.empty() || text.back() == '\n' ? 0 : 1);

    std::vector<sim::Statement> statements;
    try {
        statements = sim::parseScenario(file, text);
    } catch (const sim::ParseError& e) {
        const int line = locatedLine(e.what());
        require(line >= 1 && line <= lines,
                "a parse error not located at one of the file's lines: " + std::string(e.what()));
        return 0;
    }

    double waited = 0;
    std::set<int> lineNumbers;
    for (const auto& s : statements) {
        if (s.isWait) waited += s.waitSeconds;
        lineNumbers.insert(s.line);
    }
    if (!(waited <= maxWaitSeconds)) return -1; // too long to play here; not added to the corpus

    sim::Runtime runtime;
    const auto outcome = sim::play(file, statements, runtime);
    fuzz::requireTranscriptLines(runtime.transcript.text());
    fuzz::requireDrawableFrames(runtime.transcript.text());
    switch (outcome.exitCode) {
    case 0:
        require(outcome.error.empty(), "exit 0 with a message: " + outcome.error);
        break;
    case 1:
    case 3:
        require(lineNumbers.count(locatedLine(outcome.error)) == 1,
                "exit " + std::to_string(outcome.exitCode) +
                    " with a message not located at a statement: " + outcome.error);
        break;
    default:
        fuzz::broken("play ended with exit " + std::to_string(outcome.exitCode) + ": " +
                     outcome.error);
    }
    return 0;
}
