#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace tarnwick {

enum class QoS { userInitiated, utility };

// A delayed piece of main-thread work that can be called off before it runs.
// Cancelled from any thread; once cancel() returns on the main thread the
// work does not run, and a repeating one does not run again.
class WorkItem {
  public:
    void cancel() { cancelled_.store(true); }
    bool isCancelled() const { return cancelled_.load(); }

  private:
    std::atomic<bool> cancelled_{false};
};
using WorkHandle = std::shared_ptr<WorkItem>;

// Threads and time. The core never sleeps or spawns threads itself, so that
// the simulated platform can run all of it on a virtual clock.
//
// main(), after(), background() and now() are called from any thread (a
// background listing hands its result back with after()); every() from the
// main thread; sleep() only off it. Main-thread work runs one piece at a
// time and never inline in the call that posts it. Work from main() runs in
// posting order: the status texts of a move arrive in order before its
// summary. Work from after() runs once its delay has passed, the earliest
// due first and equal due times in posting order (a toolkit's coarse timers,
// which may swap them, will not do); how it interleaves with main() work
// due at the same moment is left open. Background work has no order: pieces
// may run at once, on any threads.
//
// Every delay and interval the core hands over is finite and at most
// maxDelay: values that come from outside (a stored preference) are bounded
// before they get here, so that no platform has to guess what a timer of
// nan or 1e300 seconds should do.
class Dispatch {
  public:
    static constexpr double maxDelay = 86400.0;

    virtual ~Dispatch() = default;
    // Runs `fn` on the main thread, later.
    virtual void main(std::function<void()> fn) = 0;
    // Runs `fn` on the main thread after `seconds` (never before, and a
    // negative delay counts as 0), unless the handle is cancelled first.
    virtual WorkHandle after(double seconds, std::function<void()> fn) = 0;
    // A repeating main-thread timer, first firing one interval from now; it
    // stops for good once the handle is cancelled, even from its own callback.
    virtual WorkHandle every(double seconds, std::function<void()> fn) = 0;
    // The priority is a hint: user-initiated work is what someone waits for,
    // utility work the periodic layout snapshot.
    virtual void background(QoS qos, std::function<void()> fn) = 0;
    // Blocks the calling background thread; never called on the main thread.
    virtual void sleep(double seconds) = 0;
    // Seconds on a monotonic clock; only differences are used.
    virtual double now() = 0;
};

} // namespace tarnwick
