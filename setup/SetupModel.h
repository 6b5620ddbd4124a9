#pragma once

#include "base/Observable.h"

#include <optional>

namespace tarnwick {

// The state behind the first-run window. TODO(setup): the model itself.
class SetupModel : public Observable {
  public:
    enum class Step { move = 0, permission = 1, login = 2, done = 3 };
};

const char* rawValue(SetupModel::Step step);

} // namespace tarnwick
