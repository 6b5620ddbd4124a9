// Statements of the setup surfaces: what the user does there, checks and dumps.
#include "platform/sim/scenario/Scenario.h"

namespace tarnwick::sim {

void registerSetupStatements(Registry&) {}

} // namespace tarnwick::sim
