#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace tarnwick {

// Ends a subscription when it goes out of scope, so that a view model made
// for one island or one window never leaves a callback behind on a
// longer-lived object. Safe to outlive the object it subscribed to.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel)
        : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& o) noexcept
        : cancel_(std::exchange(o.cancel_, nullptr)) {}
    Subscription& operator=(Subscription&& o) noexcept {
        if (this != &o) {
            reset();
            cancel_ = std::exchange(o.cancel_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { reset(); }
    void reset() {
        if (cancel_) std::exchange(cancel_, nullptr)();
    }

  private:
    std::function<void()> cancel_;
};

// Lets views follow an object's published fields. Observers are told after a
// change has taken effect, on the main thread, and re-read what they show; a
// bridge to a toolkit may coalesce several notifications into one redraw.
class Observable {
  public:
    Observable() = default;
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;
    // Virtual: view models travel as Observable and the views find their kind.
    virtual ~Observable() { *alive_ = false; }

    [[nodiscard]] Subscription observe(std::function<void()> didChange) {
        const uint64_t id = next_++;
        observers_->emplace(id, std::move(didChange));
        std::weak_ptr<Observers> list = observers_;
        return Subscription([list, id] {
            if (auto l = list.lock()) l->erase(id);
        });
    }

  protected:
    void didChange() {
        // Observers may unsubscribe (or drop this object) while being told.
        auto list = observers_;
        auto alive = alive_;
        for (auto it = list->begin(); it != list->end();) {
            const uint64_t id = it->first;
            auto f = it->second;
            f();
            if (!*alive) return;
            it = list->upper_bound(id);
        }
    }

  private:
    using Observers = std::map<uint64_t, std::function<void()>>;
    std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    uint64_t next_ = 0;
};

} // namespace tarnwick
