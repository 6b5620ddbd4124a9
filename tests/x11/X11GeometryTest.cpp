// What the x11 platform computes without a server: screens from RandR
// monitors, the usable area from docks, names from EDIDs, text decoding.
#include "displays/Displays.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/X11Trust.h"
#include "platform/x11/X11Windows.h"
#include "platform/x11/X11Workspace.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace tarnwick::x11 {
namespace {

Monitor monitor(uint32_t id, const char* name, Rect frame, bool primary = false) {
    return {.id = id, .name = name, .frame = frame, .usable = frame, .primary = primary};
}

// The core converts the port's bottom-left screens itself; what must come out
// is root space moved so that the primary's top-left is the origin, whatever
// the primary's place in the root.
TEST(X11Screens, CoreSpaceStartsAtThePrimaryWhereverItIs) {
    struct Case {
        const char* what;
        std::vector<Monitor> monitors;
        Rect expectedSecond; // the second display's frame in the core's space
    };
    const std::vector<Case> cases = {
        {"primary at the root's origin",
         {monitor(1, "eDP-1", {0, 0, 1440, 900}, true),
          monitor(2, "HDMI-1", {1440, 0, 1920, 1080})},
         {1440, 0, 1920, 1080}},
        {"primary right of the other",
         {monitor(2, "HDMI-1", {1920, 0, 1440, 900}, true), monitor(1, "DP-1", {0, 0, 1920, 1080})},
         {-1920, 0, 1920, 1080}},
        {"primary below the other",
         {monitor(1, "eDP-1", {0, 1080, 1440, 900}, true), monitor(2, "DP-1", {0, 0, 1920, 1080})},
         {0, -1080, 1920, 1080}},
    };
    for (const auto& c : cases) {
        struct FixedScreens : Screens {
            std::vector<ScreenInfo> list;
            std::vector<ScreenInfo> screens() override { return list; }
            bool isBuiltin(uint32_t) override { return false; }
            std::optional<std::vector<uint32_t>> activeDisplayList() override { return {}; }
            Point mouseLocation() override { return {}; }
            std::optional<size_t> mainScreen() override { return 0; }
            BuiltinWords builtinWords() override { return {}; }
        } screens;
        screens.list = toScreenInfo(c.monitors);
        const auto displays = Displays::all(screens);
        ASSERT_EQ(displays.size(), 2u) << c.what;
        EXPECT_EQ(displays[0].frame, (Rect{0, 0, c.monitors[0].frame.w, c.monitors[0].frame.h}))
            << c.what;
        EXPECT_EQ(displays[1].frame, c.expectedSecond) << c.what;
    }
}

TEST(X11Screens, DocksTakeTheirStripFromTheMonitorTheyTouchOnly) {
    // A laptop panel 1440x900 left of a 1920x1080 monitor in a 3360x1080 root.
    std::vector<Monitor> ms = {monitor(1, "eDP-1", {0, 0, 1440, 900}, true),
                               monitor(2, "DP-1", {1440, 0, 1920, 1080})};
    const Size root{3360, 1080};
    // A 30-pixel top panel across the laptop only, and a 48-pixel bottom dock
    // along the external monitor only.
    std::array<uint32_t, 12> top{0, 0, 30, 0, 0, 0, 0, 0, 0, 1439, 0, 0};
    std::array<uint32_t, 12> bottom{0, 0, 0, 48, 0, 0, 0, 0, 0, 0, 1440, 3359};
    applyStruts(ms, {top, bottom}, root);
    EXPECT_EQ(ms[0].usable, (Rect{0, 30, 1440, 870}));
    EXPECT_EQ(ms[1].usable, (Rect{1440, 0, 1920, 1032}));

    // A left strut of the root reaches only the monitor at the left edge; a
    // right one is measured from the root's right edge.
    ms = {monitor(1, "eDP-1", {0, 0, 1440, 900}, true), monitor(2, "DP-1", {1440, 0, 1920, 1080})};
    std::array<uint32_t, 12> left{64, 0, 0, 0, 0, 899, 0, 0, 0, 0, 0, 0};
    std::array<uint32_t, 12> right{0, 20, 0, 0, 0, 0, 0, 1079, 0, 0, 0, 0};
    applyStruts(ms, {left, right}, root);
    EXPECT_EQ(ms[0].usable, (Rect{64, 0, 1376, 900}));
    EXPECT_EQ(ms[1].usable, (Rect{1440, 0, 1900, 1080}));

    // A dock claiming the whole laptop panel (a broken or hostile client)
    // would leave windows nowhere to go: its claim is ignored.
    ms = {monitor(1, "eDP-1", {0, 0, 1440, 900}, true), monitor(2, "DP-1", {1440, 0, 1920, 1080})};
    std::array<uint32_t, 12> all{0, 0, 4000, 0, 0, 0, 0, 0, 0, 1439, 0, 0};
    applyStruts(ms, {all}, root);
    EXPECT_EQ(ms[0].usable, ms[0].frame);
    EXPECT_EQ(ms[1].usable, ms[1].frame);
}

TEST(X11Screens, NamesAndPanels) {
    uint8_t edid[128] = {};
    // Descriptor 2 (bytes 72..89) names the monitor, padded as EDIDs are.
    const uint8_t named[18] = {0,   0,   0,   0xFC, 0,   'D', 'E', 'L',  'L',
                               ' ', 'U', '2', '7',  '2', '0', 'Q', 0x0A, ' '};
    std::memcpy(edid + 72, named, sizeof named);
    EXPECT_EQ(edidMonitorName(edid, sizeof edid), "DELL U2720Q");
    EXPECT_EQ(edidMonitorName(edid, 100), "") << "a short block is not read past its end";
    uint8_t serialOnly[128] = {};
    serialOnly[57] = 0xFF;
    EXPECT_EQ(edidMonitorName(serialOnly, sizeof serialOnly), "");

    EXPECT_TRUE(isPanelConnector("eDP-1", ""));
    EXPECT_TRUE(isPanelConnector("LVDS1", ""));
    EXPECT_TRUE(isPanelConnector("DSI-1", ""));
    EXPECT_TRUE(isPanelConnector("DUMMY0", "Panel"));
    EXPECT_FALSE(isPanelConnector("HDMI-1", "HDMI"));
    EXPECT_FALSE(isPanelConnector("DP-1", ""));
}

TEST(X11Screens, ADisplayKeepsItsNumberThroughAReplug) {
    DisplayNumbers n;
    EXPECT_EQ(n.number("output DP-1", 0x42), 0x42u); // X11's own number when first seen
    EXPECT_EQ(n.number("output eDP-1", 0x43), 0x43u);
    // Unplugged and back under a fresh XID (an MST output made anew): the old number.
    EXPECT_EQ(n.number("output DP-1", 0x51), 0x42u);
    // Another connector handed DP-1's retired XID: a number of its own, above any XID.
    const uint32_t hdmi = n.number("output HDMI-1", 0x42);
    EXPECT_NE(hdmi, 0x42u);
    EXPECT_GE(hdmi, 1u << 29);
    EXPECT_EQ(n.number("output HDMI-1", 0x60), hdmi);
    EXPECT_NE(n.number("output DP-2", hdmi), hdmi); // even one it suggests itself
    EXPECT_EQ(n.number("monitor VIRTUAL", 0x1f0), 0x1f0u);
}

TEST(X11Windows, StringPropertiesAreLatin1) {
    // "Café" as WM_CLASS carries it: one byte 0xE9, which is not UTF-8.
    const char bytes[] = {'C', 'a', 'f', static_cast<char>(0xE9)};
    EXPECT_EQ(latin1ToUtf8(bytes, sizeof bytes), "Caf\xC3\xA9");
    EXPECT_EQ(latin1ToUtf8("xterm", 5), "xterm");
}

TEST(X11Trust, OnlyAnX11SessionWithAWindowManager) {
    EXPECT_EQ(untrustedReason("x11", nullptr, true), "");
    EXPECT_EQ(untrustedReason(nullptr, "", true), "");
    EXPECT_NE(untrustedReason("wayland", nullptr, true), "");
    EXPECT_NE(untrustedReason("x11", "wayland-0", true), "") << "Xwayland under a Wayland session";
    EXPECT_NE(untrustedReason("x11", nullptr, false), "");
}

TEST(X11Workspace, InstalledPrefixesAreInstalls) {
    // Only /opt/tarnwick was installed with its desktop entry.
    auto exists = [](const std::string& path) {
        return path == "/opt/tarnwick/share/applications/org.tarnwick.Tarnwick.desktop";
    };
    const std::string home = "/home/ada";
    EXPECT_TRUE(installedAt("/usr/bin/tarnwick", home, exists));
    EXPECT_TRUE(installedAt("/usr/local/bin/tarnwick", home, exists));
    EXPECT_TRUE(installedAt("/home/ada/.local/bin/tarnwick", home, exists));
    EXPECT_TRUE(installedAt("/opt/tarnwick/bin/tarnwick", home, exists));
    EXPECT_FALSE(installedAt("/home/ada/src/tarnwick/build/tarnwick", home, exists));
    EXPECT_FALSE(installedAt("/usr/bin/x/tarnwick", home, exists));
    EXPECT_FALSE(installedAt("/srv/bin/tarnwick", home, exists))
        << "a bin folder without our desktop entry beside it is no install";
}

} // namespace
} // namespace tarnwick::x11
