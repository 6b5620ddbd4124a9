#include "platform/sim/scenario/Scenario.h"

#include <atomic>
#include <new>
#include <sstream>

namespace tarnwick::sim {

Runtime::Runtime(std::FILE* echo)
    : transcript(dispatch, echo)
    , desktop(dispatch, transcript)
    , platform_(desktop.platform()) {}

Runtime::~Runtime() {
    // Background work still waiting must unwind while the core it uses exists.
    dispatch.shutdown();
}

void Runtime::launch(const std::vector<std::string>& args) {
    app_ = std::make_unique<App>(platform_, args);
    app_->didFinishLaunching();
}

App& Runtime::app() {
    if (!app_) throw CheckFailed("expected a launched program, got none");
    return *app_;
}

const StatementKind* Registry::find(const std::string& first, const std::string& second,
                                    bool& twoWords) const {
    twoWords = true;
    if (auto it = kinds_.find(first + " " + second); it != kinds_.end()) return &it->second;
    twoWords = false;
    if (auto it = kinds_.find(first); it != kinds_.end()) return &it->second;
    return nullptr;
}

const Registry& statements() {
    static const Registry registry = [] {
        Registry r;
        registerWorldStatements(r);
        registerWindowStatements(r);
        registerAppStatements(r);
        registerIslandStatements(r);
        registerSetupStatements(r);
        registerShellStatements(r);
        return r;
    }();
    return registry;
}

std::vector<Statement> parseScenario(const std::string& file, const std::string& text) {
    std::vector<Statement> out;
    ParseState state;
    double clock = 0; // where the waits so far take the virtual clock
    std::istringstream in(text);
    std::string raw;
    int64_t lineNo = 0;
    auto where = [&] { return file + ":" + std::to_string(lineNo) + ": "; };
    while (std::getline(in, raw)) {
        ++lineNo;
        try {
            Cursor c(stripComment(raw));
            if (c.atEnd()) continue;
            auto first = c.word("a statement");
            auto second = c.atEnd() ? std::string() : c.peekWord();
            bool twoWords = false;
            const StatementKind* kind = statements().find(first, second, twoWords);
            if (!kind) {
                if (first == "expect" || first == "dump")
                    throw ParseError("unknown statement '" + first + " " + second + "'");
                throw ParseError("unknown statement '" + first + "'");
            }
            if (twoWords) c.word("a second keyword");
            if (kind->when == StatementKind::afterLaunch && !state.launched)
                throw ParseError("'" + first + "' needs the program launched first");
            Statement s;
            s.line = lineNo;
            if (first == "wait") {
                s.isWait = true;
                s.waitSeconds = c.number("the seconds to wait");
                c.end();
                if (s.waitSeconds < 0) throw ParseError("cannot wait a negative time");
                // The clock counts whole microseconds in 64 bits; this bound
                // keeps it, and every delay the program adds to it, far
                // from overflowing.
                clock += s.waitSeconds;
                if (clock > maxClockSeconds)
                    throw ParseError("the virtual clock may not pass " +
                                     std::to_string(static_cast<int64_t>(maxClockSeconds)) +
                                     " seconds");
            } else {
                s.run = kind->parse(c, state);
            }
            out.push_back(std::move(s));
        } catch (const ParseError& e) {
            throw ParseError(where() + e.what());
        } catch (const std::bad_alloc&) {
            throw ParseError(where() + "out of memory");
        } catch (const std::exception& e) {
            // A library's refusal that no check above foresaw still names the line.
            throw ParseError(where() + "cannot read the statement: " + e.what());
        }
    }
    return out;
}

namespace {

std::atomic<int64_t> playing{0};
static_assert(std::atomic<int64_t>::is_always_lock_free, "read in a signal handler");

Outcome playStatements(const std::string& file, const std::vector<Statement>& statements,
                       Runtime& rt) {
    constexpr int64_t day = 86400LL * 1000000LL;
    auto where = [&](const Statement& s) { return file + ":" + std::to_string(s.line) + ": "; };
    for (const auto& s : statements) {
        playing = s.line;
        // A statement takes effect after the work already due at this time.
        auto run = [&](int64_t until, int64_t deadline) {
            return rt.dispatch.runUntil(until, deadline);
        };
        const int64_t now = rt.dispatch.nowMicros();
        SimDispatch::Run result;
        if (s.isWait)
            result = run(now + SimDispatch::micros(s.waitSeconds), now + day);
        else
            result = run(now, INT64_MAX);
        if (result == SimDispatch::Run::stopped) return {0, {}};
        if (result == SimDispatch::Run::deadline)
            return {3, where(s) + "24 hours of virtual time passed without the wait ending"};
        if (result == SimDispatch::Run::runaway)
            return {3, where(s) + "the program keeps scheduling work at one instant; stopped"};
        if (s.isWait) continue;
        try {
            s.run(rt);
        } catch (const CheckFailed& e) {
            return {1, where(s) + e.what()};
        }
        if (rt.dispatch.stopped()) return {0, {}};
    }
    return {0, {}};
}

} // namespace

Outcome play(const std::string& file, const std::vector<Statement>& statements, Runtime& rt) {
    // Located at the statement or wait that was running when the exception
    // came out; `done` clears that line only once the outcome is made.
    auto fault = [&](const std::string& what) {
        return Outcome{3, file + ":" + std::to_string(playing.load()) + ": " + what};
    };
    struct Done {
        ~Done() { playing = 0; }
    } done;
    try {
        return playStatements(file, statements, rt);
    } catch (const std::bad_alloc&) {
        return fault("out of memory");
    } catch (const std::exception& e) {
        return fault(std::string("the program under test threw an exception: ") + e.what());
    } catch (...) {
        return fault("the program under test threw an exception");
    }
}

int64_t playingLine() {
    return playing;
}

PlatformEvent eventNamed(const std::string& name) {
    static const std::map<std::string, PlatformEvent> events{
        {"screens", PlatformEvent::displaysChanged},    {"willSleep", PlatformEvent::goingToSleep},
        {"screensDidSleep", PlatformEvent::screensOff}, {"didWake", PlatformEvent::wokeUp},
        {"screensDidWake", PlatformEvent::screensOn},
    };
    auto it = events.find(name);
    if (it == events.end())
        throw ParseError("unknown event '" + name +
                         "' (screens, willSleep, screensDidSleep, didWake, screensDidWake)");
    return it->second;
}

bool yesNo(Cursor& c, const char* what) {
    auto w = c.word(what);
    if (w == "yes") return true;
    if (w == "no") return false;
    throw ParseError(std::string("expected yes or no for ") + what + ", found '" + w + "'");
}

int32_t processId(Cursor& c) {
    auto v = c.integer("a process identifier", INT32_MIN, INT32_MAX);
    if (v == SimWorld::ownPid)
        throw ParseError("process identifier " + std::to_string(v) + " is this program's own");
    return static_cast<int32_t>(v);
}

} // namespace tarnwick::sim
