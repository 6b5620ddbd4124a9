#include "setup/SetupWindow.h"

namespace tarnwick {

void SetupWindow::show(SetupModel::Step) {}

} // namespace tarnwick
