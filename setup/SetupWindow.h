#pragma once

namespace tarnwick {

enum class SetupStep { move, permission, login, done };

const char* rawValue(SetupStep step);

// The first-run window.
class SetupWindow {
  public:
    virtual ~SetupWindow() = default;
    virtual void show(SetupStep start) = 0;
};

} // namespace tarnwick
