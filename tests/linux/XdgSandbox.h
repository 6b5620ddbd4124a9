#pragma once

#include <string>

namespace tarnwick::test {

// The test program's private XDG folders. GLib reads XDG_DATA_HOME,
// XDG_DATA_DIRS and XDG_CONFIG_HOME once, at its first use, so they are set
// for the whole program before any test runs: nothing a test does reaches
// the user's own trash, applications or settings. Under the root:
//   data/applications    the user's desktop entries (XDG_DATA_HOME=data)
//   system/applications  the installed ones (XDG_DATA_DIRS=system)
//   config               XDG_CONFIG_HOME
//   asound.conf          ALSA's configuration (ALSA_CONFIG_PATH): the system's,
//                        until a test routes the default device elsewhere
std::string xdgSandbox();

} // namespace tarnwick::test
