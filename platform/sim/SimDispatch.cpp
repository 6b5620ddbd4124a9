#include "platform/sim/SimDispatch.h"

#include "base/JsonText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tarnwick::sim {

namespace {
thread_local void* currentThread = nullptr;
}

SimDispatch::Event SimDispatch::event(int64_t at, std::function<void()> fn) {
    Event e;
    e.at = at;
    e.fn = std::move(fn);
    return e;
}

SimDispatch::~SimDispatch() {
    shutdown();
}

int64_t SimDispatch::micros(double seconds) {
    // Saturated well inside int64_t, so that the clock plus any span stays a
    // number; the runner keeps the clock itself far below that.
    constexpr double limit = 4e18;
    if (std::isnan(seconds)) return 0;
    return std::llround(std::clamp(seconds * 1e6, -limit, limit));
}

bool SimDispatch::onMainThread() const {
    return currentThread == nullptr;
}

namespace {
[[noreturn]] void wrongThread(const char* call, const char* on, const char* belongs) {
    std::fprintf(stderr, "tarnwick-sim: %s was called on %s; it belongs on %s\n", call, on,
                 belongs);
    std::abort();
}
} // namespace

void SimDispatch::requireMain(const char* call) const {
    if (!onMainThread()) wrongThread(call, "a background thread", "the main thread");
}

void SimDispatch::requireBackground(const char* call) const {
    if (onMainThread() && !mainMayBlock_)
        wrongThread(call, "the main thread", "a background thread");
}

void SimDispatch::requireDelay(const char* call, double seconds) const {
    if (std::isfinite(seconds) && seconds <= maxDelay) return;
    std::fprintf(stderr,
                 "tarnwick-sim: %s was handed a delay of %s s; a delay is finite and at "
                 "most %s s\n",
                 call, formatNumber(seconds).c_str(), formatNumber(maxDelay).c_str());
    std::abort();
}

void SimDispatch::post(Event e) {
    std::lock_guard lock(mutex_);
    postLocked(std::move(e));
}

void SimDispatch::postLocked(Event e) {
    if (stopping_ || stopped_) return;
    e.seq = seq_++;
    queue_.push(std::move(e));
}

void SimDispatch::main(std::function<void()> fn) {
    std::lock_guard lock(mutex_);
    postLocked(event(now_, std::move(fn)));
}

WorkHandle SimDispatch::after(double seconds, std::function<void()> fn) {
    requireDelay("Dispatch::after", seconds);
    auto item = std::make_shared<WorkItem>();
    std::lock_guard lock(mutex_);
    Event e = event(now_ + std::max<int64_t>(0, micros(seconds)), std::move(fn));
    e.item = item;
    postLocked(std::move(e));
    return item;
}

WorkHandle SimDispatch::every(double seconds, std::function<void()> fn) {
    requireMain("Dispatch::every");
    requireDelay("Dispatch::every", seconds);
    auto item = std::make_shared<WorkItem>();
    std::lock_guard lock(mutex_);
    const int64_t interval = std::max<int64_t>(1, micros(seconds));
    Event e = event(now_ + interval, std::move(fn));
    e.repeat = interval;
    e.item = item;
    postLocked(std::move(e));
    return item;
}

void SimDispatch::background(QoS, std::function<void()> fn) {
    std::lock_guard lock(mutex_);
    if (stopping_ || stopped_) return;
    threads_.push_back(std::make_unique<Thread>());
    Thread* t = threads_.back().get();
    t->fn = std::move(fn);
    t->thread = std::thread([this, t] {
        {
            std::unique_lock l(mutex_);
            cv_.wait(l, [&] { return running_ == t; });
        }
        currentThread = t;
        try {
            if (!stopping_) t->fn();
        } catch (const Shutdown&) {
        }
        t->fn = nullptr; // release what the work held while the baton is still ours
        std::lock_guard l(mutex_);
        t->finished = true;
        running_ = nullptr;
        cv_.notify_all();
    });
    Event e = event(now_);
    e.thread = t;
    postLocked(std::move(e));
}

void SimDispatch::sleep(double seconds) {
    requireDelay("Dispatch::sleep", seconds);
    if (onMainThread()) {
        if (mainMayBlock_) return;
        std::fprintf(stderr, "tarnwick-sim: the main thread blocked for %s s\n",
                     formatNumber(seconds).c_str());
        std::abort();
    }
    auto* self = static_cast<Thread*>(currentThread);
    std::unique_lock l(mutex_);
    if (stopping_) throw Shutdown{};
    Event e = event(now_ + std::max<int64_t>(0, micros(seconds)));
    e.thread = self;
    postLocked(std::move(e));
    running_ = nullptr;
    cv_.notify_all();
    cv_.wait(l, [&] { return running_ == self; });
    if (stopping_) throw Shutdown{};
}

double SimDispatch::now() {
    std::lock_guard lock(mutex_);
    return static_cast<double>(now_) / 1e6;
}

void SimDispatch::resume(Thread* t) {
    std::unique_lock l(mutex_);
    running_ = t;
    cv_.notify_all();
    cv_.wait(l, [&] { return running_ == nullptr; });
}

void SimDispatch::reap() {
    for (auto it = threads_.begin(); it != threads_.end();) {
        if ((*it)->finished) {
            (*it)->thread.join();
            it = threads_.erase(it);
        } else {
            ++it;
        }
    }
}

SimDispatch::Run SimDispatch::runUntil(int64_t until, int64_t deadline) {
    constexpr int maxAtOneInstant = 1000000;
    int sameInstant = 0;
    int64_t lastAt = -1;
    for (;;) {
        Event e;
        {
            std::lock_guard lock(mutex_);
            if (stopped_) return Run::stopped;
            if (queue_.empty() || queue_.top().at > until) break;
            if (queue_.top().at > deadline) {
                now_ = deadline;
                return Run::deadline;
            }
            e = queue_.top();
            queue_.pop();
            now_ = e.at;
            if (e.repeat && !e.item->isCancelled()) {
                Event next = e;
                next.at += e.repeat;
                postLocked(std::move(next));
            }
        }
        sameInstant = e.at == lastAt ? sameInstant + 1 : 0;
        lastAt = e.at;
        if (sameInstant > maxAtOneInstant) return Run::runaway;
        if (e.thread) {
            resume(e.thread);
            std::lock_guard lock(mutex_);
            reap();
        } else if (!e.item || !e.item->isCancelled()) {
            e.fn();
        }
    }
    std::lock_guard lock(mutex_);
    if (stopped_) return Run::stopped;
    if (until > now_) now_ = until;
    return Run::done;
}

void SimDispatch::stop() {
    std::lock_guard lock(mutex_);
    stopped_ = true;
    queue_ = {};
}

void SimDispatch::shutdown() {
    {
        std::lock_guard lock(mutex_);
        if (stopping_ && threads_.empty()) return;
        stopping_ = true;
        queue_ = {};
    }
    // Each waiting thread wakes into a Shutdown and unwinds.
    for (;;) {
        Thread* t = nullptr;
        {
            std::lock_guard lock(mutex_);
            reap();
            for (auto& th : threads_)
                if (!th->finished) {
                    t = th.get();
                    break;
                }
            if (!t) break;
        }
        resume(t);
    }
}

} // namespace tarnwick::sim
