#pragma once

#include <atomic>
#include <functional>
#include <memory>

namespace tarnwick {

enum class QoS { userInitiated, utility };

// A delayed piece of main-thread work that can be called off before it runs.
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
class Dispatch {
  public:
    virtual ~Dispatch() = default;
    // Runs `fn` on the main thread, later (never inline).
    virtual void main(std::function<void()> fn) = 0;
    // Runs `fn` on the main thread after `seconds`, unless the handle is cancelled first.
    virtual WorkHandle after(double seconds, std::function<void()> fn) = 0;
    // A repeating main-thread timer, first firing one interval from now; it
    // stops for good once the handle is cancelled.
    virtual WorkHandle every(double seconds, std::function<void()> fn) = 0;
    // Runs `fn` on a background thread.
    virtual void background(QoS qos, std::function<void()> fn) = 0;
    // Blocks the calling background thread.
    virtual void sleep(double seconds) = 0;
    // Seconds on a monotonic clock.
    virtual double now() = 0;
};

} // namespace tarnwick
