#pragma once

#include "ports/Dispatch.h"

#include <QObject>
#include <QSocketNotifier>

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tarnwick::xdg {

// Threads and time for the real program. The Qt event loop is the main
// thread; timers are Qt timers. Work for the main thread goes through a
// queue of our own guarded by a standard mutex and an eventfd that wakes the
// loop, and background work runs on a small pool of standard threads: so
// every hand-over between threads is one that ThreadSanitizer can see.
class QtDispatch : public QObject, public Dispatch {
    Q_OBJECT
  public:
    explicit QtDispatch(int backgroundThreads = 4);
    ~QtDispatch() override;

    void main(std::function<void()> fn) override;
    WorkHandle after(double seconds, std::function<void()> fn) override;
    WorkHandle every(double seconds, std::function<void()> fn) override;
    void background(QoS qos, std::function<void()> fn) override;
    void sleep(double seconds) override;
    double now() override;

    // Lets running background work finish, drops what has not started, and
    // joins the threads; main-thread work still queued is dropped. Call it
    // after the event loop ends and before the objects the work refers to go.
    void shutdown();

  private:
    void drainMain();
    void work();

    int wake_ = -1; // eventfd
    std::unique_ptr<QSocketNotifier> notifier_;
    std::mutex mainMutex_;
    std::deque<std::function<void()>> mainQueue_;

    std::mutex poolMutex_;
    std::condition_variable poolReady_;
    std::deque<std::function<void()>> userInitiated_, utility_;
    bool stopping_ = false;
    std::vector<std::thread> threads_;

    // Main thread only.
    std::map<uint64_t, std::function<void()>> timed_;
    uint64_t lastTimed_ = 0;
};

} // namespace tarnwick::xdg
