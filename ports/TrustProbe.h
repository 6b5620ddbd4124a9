#pragma once

#include <cstdint>

namespace tarnwick {

// The two answers of Trust::probe() the program tells apart: the interface
// answers, or it still refuses this process.
inline constexpr int32_t axSuccess = 0;
inline constexpr int32_t axAPIDisabled = -25211;

} // namespace tarnwick
