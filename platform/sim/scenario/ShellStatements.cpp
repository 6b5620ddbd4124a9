// Statements of the shell surfaces: what the user does there, checks and dumps.
#include "platform/sim/scenario/Scenario.h"

namespace tarnwick::sim {

void registerShellStatements(Registry&) {}

} // namespace tarnwick::sim
