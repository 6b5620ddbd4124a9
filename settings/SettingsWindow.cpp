#include "settings/SettingsWindow.h"

namespace tarnwick {

void SettingsWindow::show() {}

} // namespace tarnwick
