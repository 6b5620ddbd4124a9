#pragma once

#include "app/App.h"
#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimDispatch.h"
#include "platform/sim/SimScreens.h"
#include "platform/sim/SimSurfaces.h"
#include "platform/sim/Transcript.h"
#include "platform/sim/scenario/Lexer.h"

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::sim {

// An `expect` that does not hold, or a statement whose subject is not there
// when it runs; the message reads "expected …, got …".
struct CheckFailed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The simulated desktop with the real core started on it.
class Runtime {
  public:
    explicit Runtime(std::FILE* echo = nullptr);
    ~Runtime();

    SimDispatch dispatch;
    Transcript transcript;
    SimDesktop desktop;

    // Renders what is on screen now as pictures named NAME; unset, `shot`
    // does nothing.
    std::function<void(const std::string& name)> shoot;

    void launch(const std::vector<std::string>& args);
    bool launched() const { return app_ != nullptr; }
    App& app();
    // Runs platform code that may block without letting virtual time pass.
    template <typename F> auto instant(F&& f) {
        dispatch.setMainMayBlock(true);
        struct Reset {
            SimDispatch& d;
            ~Reset() { d.setMainMayBlock(false); }
        } reset{dispatch};
        return f();
    }

  private:
    Platform platform_;
    std::unique_ptr<App> app_;
};

using Action = std::function<void(Runtime&)>;

// What the parser knows while it reads a file, so that statements can be
// refused before anything runs.
struct ParseState {
    bool launched = false;
};

struct StatementKind {
    std::function<Action(Cursor&, ParseState&)> parse;
    enum When { anytime, afterLaunch } when = anytime;
};

// Statements by their keyword ("screen") or two-word keyword ("expect status").
// Each subsystem's statements are registered by a function of their own.
class Registry {
  public:
    void add(const std::string& keyword, StatementKind kind) { kinds_[keyword] = std::move(kind); }
    // The statement that a line starting with these words is; `twoWords` tells
    // whether it took the second word as part of its keyword.
    const StatementKind* find(const std::string& first, const std::string& second,
                              bool& twoWords) const;

  private:
    std::map<std::string, StatementKind> kinds_;
};

void registerWorldStatements(Registry& r);
void registerWindowStatements(Registry& r);
void registerAppStatements(Registry& r);
void registerIslandStatements(Registry& r);
void registerSetupStatements(Registry& r);
void registerShellStatements(Registry& r); // the menu, reopening, the settings window
const Registry& statements();

// How far the waits of a scenario may take the virtual clock, in seconds.
inline constexpr double maxClockSeconds = 1e9;

struct Statement {
    int64_t line = 0;
    Action run;
    bool isWait = false;
    double waitSeconds = 0;
};

// Parses a whole scenario; throws ParseError with "FILE:LINE: " in front.
std::vector<Statement> parseScenario(const std::string& file, const std::string& text);

struct Outcome {
    int exitCode = 0;
    std::string error; // for standard error, without a trailing newline
};

// Plays a parsed scenario on `runtime`. When the program ends itself, play
// stops there with exit 0: every check so far held. An exception out of the
// program under test ends it with exit 3 and the line that was playing.
Outcome play(const std::string& file, const std::vector<Statement>& statements, Runtime& runtime);

// The line of the statement or wait being played, 0 when none is; safe to
// read in a signal handler, which reports a crash at that line.
int64_t playingLine();

// Shared helpers of the statement modules.
PlatformEvent eventNamed(const std::string& name);
bool yesNo(Cursor& c, const char* what);
// Another process's identifier; this program's own is not one.
int32_t processId(Cursor& c);

} // namespace tarnwick::sim
