#pragma once

#include <functional>
#include <vector>

namespace tarnwick {

// Lets views follow an object's published fields. Observers are told before a
// change takes effect, and re-read what they show on the main thread.
class Observable {
  public:
    void observe(std::function<void()> willChange) { observers_.push_back(std::move(willChange)); }

  protected:
    void willChange() {
        for (auto& f : observers_)
            f();
    }

  private:
    std::vector<std::function<void()>> observers_;
};

} // namespace tarnwick
