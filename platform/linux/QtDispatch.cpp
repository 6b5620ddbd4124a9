#include "platform/linux/QtDispatch.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <cmath>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tarnwick::xdg {

namespace {

// A delay the timer can take: finite, not negative, at most a day.
int milliseconds(double seconds) {
    if (!std::isfinite(seconds) || seconds <= 0) return 0;
    return static_cast<int>(std::min(seconds, 86400.0) * 1000.0 + 0.5);
}

bool onMainThread() {
    auto* app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

} // namespace

QtDispatch::QtDispatch(int backgroundThreads) {
    wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(wake_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { drainMain(); });
    for (int i = 0; i < backgroundThreads; ++i)
        threads_.emplace_back([this] { work(); });
}

QtDispatch::~QtDispatch() {
    shutdown();
    notifier_.reset();
    if (wake_ >= 0) ::close(wake_);
}

void QtDispatch::main(std::function<void()> fn) {
    {
        std::lock_guard lock(mainMutex_);
        mainQueue_.push_back(std::move(fn));
    }
    const uint64_t one = 1;
    (void)!::write(wake_, &one, sizeof one);
}

void QtDispatch::drainMain() {
    uint64_t count = 0;
    (void)!::read(wake_, &count, sizeof count);
    // Only what was queued before this turn: work that posts more waits for
    // the next turn of the loop, so timers and X events are not starved.
    std::deque<std::function<void()>> batch;
    {
        std::lock_guard lock(mainMutex_);
        batch.swap(mainQueue_);
    }
    for (auto& fn : batch)
        fn();
}

WorkHandle QtDispatch::after(double seconds, std::function<void()> fn) {
    auto handle = std::make_shared<WorkItem>();
    auto start = [this, seconds, handle, fn = std::move(fn)]() mutable {
        // The work is kept here rather than in the timer, so that shutdown
        // can let go of what it holds before the objects it refers to end.
        const uint64_t id = ++lastTimed_;
        timed_[id] = [handle, fn = std::move(fn)] {
            if (!handle->isCancelled()) fn();
        };
        QTimer::singleShot(milliseconds(seconds), Qt::PreciseTimer, this, [this, id] {
            auto it = timed_.find(id);
            if (it == timed_.end()) return;
            auto fn = std::move(it->second);
            timed_.erase(it);
            fn();
        });
    };
    if (onMainThread())
        start();
    else
        main(std::move(start));
    return handle;
}

WorkHandle QtDispatch::every(double seconds, std::function<void()> fn) {
    auto handle = std::make_shared<WorkItem>();
    auto start = [this, seconds, handle, fn = std::move(fn)]() mutable {
        auto* timer = new QTimer(this);
        timer->setInterval(std::max(1, milliseconds(seconds)));
        connect(timer, &QTimer::timeout, timer, [timer, handle, fn = std::move(fn)] {
            if (handle->isCancelled()) {
                timer->deleteLater();
                return;
            }
            fn();
        });
        timer->start();
    };
    if (onMainThread())
        start();
    else
        main(std::move(start));
    return handle;
}

void QtDispatch::background(QoS qos, std::function<void()> fn) {
    {
        std::lock_guard lock(poolMutex_);
        if (stopping_) return;
        (qos == QoS::userInitiated ? userInitiated_ : utility_).push_back(std::move(fn));
    }
    poolReady_.notify_one();
}

void QtDispatch::work() {
    for (;;) {
        std::function<void()> fn;
        {
            std::unique_lock lock(poolMutex_);
            poolReady_.wait(
                lock, [this] { return stopping_ || !userInitiated_.empty() || !utility_.empty(); });
            if (stopping_) return;
            // What the user asked for goes before the periodic snapshot.
            auto& queue = !userInitiated_.empty() ? userInitiated_ : utility_;
            fn = std::move(queue.front());
            queue.pop_front();
        }
        fn();
    }
}

void QtDispatch::sleep(double seconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds(seconds)));
}

double QtDispatch::now() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void QtDispatch::shutdown() {
    // What is dropped is destroyed outside the locks: a closure may hold the
    // last reference to an object whose destructor posts work of its own.
    std::deque<std::function<void()>> dropped;
    {
        std::lock_guard lock(poolMutex_);
        if (stopping_ && threads_.empty()) return;
        stopping_ = true;
        dropped.swap(userInitiated_);
        for (auto& fn : utility_)
            dropped.push_back(std::move(fn));
        utility_.clear();
    }
    poolReady_.notify_all();
    dropped.clear();
    for (auto& t : threads_)
        if (t.joinable()) t.join();
    threads_.clear();
    // Dropping main-thread work may post more; that goes too.
    for (;;) {
        {
            std::lock_guard lock(mainMutex_);
            dropped.swap(mainQueue_);
        }
        auto timed = std::move(timed_);
        timed_.clear();
        if (dropped.empty() && timed.empty()) break;
        dropped.clear();
    }
    for (auto* timer : findChildren<QTimer*>())
        delete timer;
}

} // namespace tarnwick::xdg
