#pragma once

#include "ports/Dispatch.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <queue>
#include <thread>
#include <vector>

namespace tarnwick::sim {

// Thrown out of a background thread's sleep when the simulation ends, so that
// the thread unwinds and can be joined.
struct Shutdown {};

// Threads and time on a virtual clock. Background work runs on real threads,
// but only one thread (the main one or a background one) runs at a time,
// handing a baton back and forth, so that everything happens in virtual-time
// order and two runs interleave the same way.
class SimDispatch : public Dispatch {
  public:
    SimDispatch() = default;
    ~SimDispatch() override;

    void main(std::function<void()> fn) override;
    WorkHandle after(double seconds, std::function<void()> fn) override;
    WorkHandle every(double seconds, std::function<void()> fn) override;
    void background(QoS qos, std::function<void()> fn) override;
    void sleep(double seconds) override;
    double now() override;

    int64_t nowMicros() const {
        std::lock_guard lock(mutex_);
        return now_;
    }
    static int64_t micros(double seconds);

    enum class Run { done, runaway, deadline, stopped };
    // Runs everything due up to and including `until`, then sets the clock
    // there. Stops early when the clock would pass `deadline`, when one
    // instant holds an endless chain of work, or when the program ends itself.
    Run runUntil(int64_t until, int64_t deadline = INT64_MAX);
    // The program ended itself: the work under way finishes, nothing else runs.
    void stop();
    bool stopped() const {
        std::lock_guard lock(mutex_);
        return stopped_;
    }
    // Ends every background thread still waiting; nothing runs afterwards.
    void shutdown();
    // Lets main-thread code block without time passing (for the runner's dumps).
    // Meanwhile the main thread also stands in for a background one, so it may
    // use the ports that are kept off the main thread.
    void setMainMayBlock(bool may) { mainMayBlock_ = may; }
    bool onMainThread() const;

    // The ports' thread rules, checked by the simulated ports on every call.
    // A call on the wrong thread ends the run with the call's name on
    // standard error: on a real desktop it would freeze the interface (a
    // blocking call on the main thread) or upset the toolkit (a view touched
    // off it) only now and then, where nobody could trace it back.
    void requireMain(const char* call) const;
    void requireBackground(const char* call) const;
    // A delay beyond the port's bounds is the core's fault too, and would
    // overflow the virtual clock: it ends the run the same way.
    void requireDelay(const char* call, double seconds) const;

  private:
    struct Thread {
        std::function<void()> fn;
        std::thread thread;
        bool finished = false;
    };
    struct Event {
        int64_t at = 0;
        uint64_t seq = 0;
        std::function<void()> fn; // main-thread work, or
        Thread* thread = nullptr; // a background thread to resume
        WorkHandle item;          // cancellable main-thread work
        int64_t repeat = 0;       // a timer's interval
    };
    struct Later {
        bool operator()(const Event& a, const Event& b) const {
            return a.at != b.at ? a.at > b.at : a.seq > b.seq;
        }
    };

    static Event event(int64_t at, std::function<void()> fn = nullptr);
    void post(Event e);
    void postLocked(Event e);
    void resume(Thread* t);
    void reap();

    mutable std::mutex mutex_;
    std::condition_variable cv_;
    std::priority_queue<Event, std::vector<Event>, Later> queue_;
    std::list<std::unique_ptr<Thread>> threads_;
    Thread* running_ = nullptr; // null: the main thread holds the baton
    int64_t now_ = 0;
    uint64_t seq_ = 0;
    bool stopping_ = false;
    bool stopped_ = false;
    bool mainMayBlock_ = false;
};

} // namespace tarnwick::sim
