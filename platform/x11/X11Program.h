#pragma once

#include <string>
#include <vector>

namespace tarnwick::x11 {

// Runs the program on the X server named by DISPLAY until it is asked to
// quit; returns the exit status. `args` are the program's arguments, already
// checked; `sounds` the folders the chimes may lie in.
int run(char** argv, const std::vector<std::string>& args, const std::string& executable,
        const std::vector<std::string>& sounds);

} // namespace tarnwick::x11
