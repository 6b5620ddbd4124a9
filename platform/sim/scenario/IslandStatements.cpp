// Statements of the island surfaces: what the user does there, checks and dumps.
#include "platform/sim/scenario/Scenario.h"

namespace tarnwick::sim {

void registerIslandStatements(Registry&) {}

} // namespace tarnwick::sim
