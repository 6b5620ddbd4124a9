#pragma once

#include "platform/x11/XConnection.h"
#include "ports/Screens.h"
#include "ports/SystemLog.h"

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::x11 {

// One RandR monitor in root coordinates (top-left based, as X11 has them).
struct Monitor {
    uint32_t id = 0; // the display number (see DisplayNumbers)
    std::string name;
    Rect frame;  // root space
    Rect usable; // frame less the docks' struts
    bool builtin = false;
    bool primary = false;
};

// The core's numbers for X11's monitors. A monitor is known by its first
// output's name (the connector: "DP-1", "eDP-1"), or by its own name when it
// has no output (one made with `xrandr --setmonitor ... none`). The first time
// a name is seen it gets the number X11 itself gives it (the output's XID,
// else the name's atom), so that numbers read as X11 tools show them; from
// then on that name keeps its number for the life of the process, even when
// the server makes the output anew (a DP-MST connector behind a hub that was
// unplugged may come back under a fresh XID) or hands a retired XID to
// another connector, which then gets a number never given out before. XIDs
// and atoms stay below 2^29, so those start above them.
class DisplayNumbers {
  public:
    uint32_t number(const std::string& name, uint32_t suggested);

  private:
    std::map<std::string, uint32_t> byName_;
    std::set<uint32_t> given_;
    uint32_t next_ = 0xE0000000u;
};

// Whether a connector name or type is a laptop's own panel.
bool isPanelConnector(const std::string& outputName, const std::string& connectorType);
// The monitor-name descriptor of an EDID block; "" when it has none.
std::string edidMonitorName(const uint8_t* edid, size_t length);
// Each monitor's usable area: its frame less the struts of docks that
// reserve space along one of its edges (`struts` are _NET_WM_STRUT_PARTIAL
// values, 12 numbers each, in a root of `rootSize`).
void applyStruts(std::vector<Monitor>& monitors,
                 const std::vector<std::array<uint32_t, 12>>& struts, Size rootSize);
// The monitors as the port hands them to the core: primary first, bottom-left
// based against the primary's bottom edge.
std::vector<ScreenInfo> toScreenInfo(const std::vector<Monitor>& monitors);

// The screens of an X11 display, read from RandR 1.5 monitors. The list is
// read on the main thread when RandR or the work area says it changed and
// kept here, so that the background mover's check for its destination
// (once per window) costs no round trip.
class X11Screens : public Screens {
  public:
    X11Screens(XConnection& x, SystemLog& log);

    // Reads the monitors again; true when the list differs from before.
    // Main thread.
    bool refresh();
    // The cached monitors, primary first. Any thread.
    std::vector<Monitor> monitors();
    // Where the core's origin (the primary monitor's top-left) lies in root
    // space. Any thread.
    Point origin();

    std::vector<ScreenInfo> screens() override;
    bool isBuiltin(uint32_t displayId) override;
    std::optional<std::vector<uint32_t>> activeDisplayList() override;
    Point mouseLocation() override;
    std::optional<size_t> mainScreen() override;
    BuiltinWords builtinWords() override;

  private:
    std::vector<Monitor> read();

    XConnection& x_;
    SystemLog& log_;
    DisplayNumbers numbers_; // read() only, on the main thread
    std::mutex mutex_;
    std::vector<Monitor> monitors_;
    bool readOnce_ = false;
};

} // namespace tarnwick::x11
