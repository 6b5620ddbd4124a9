#pragma once

#include <string>
#include <vector>

namespace tarnwick::sim {
class SimDesktop;
}

namespace tarnwick::quick {

// Renders what the simulated desktop shows now through the real views, each
// surface to DIR/NAME-<surface>.png (island, settings, setup). Returns the
// files written; a file that cannot be written is named in `error`.
std::vector<std::string> shoot(sim::SimDesktop& desktop, const std::string& dir,
                               const std::string& name, std::string& error);

} // namespace tarnwick::quick
