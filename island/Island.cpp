#include "island/Island.h"

namespace tarnwick {

Island::Island(Parts parts)
    : parts_(std::move(parts)) {}

void Island::announce(const std::vector<Display>&, Link, const std::vector<Display>&) {}
void Island::choose(const Display&, const std::vector<Display>&, double) {}
void Island::close(Closing) {}

} // namespace tarnwick
