#pragma once

#include "base/Geometry.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarnwick {

enum class ActivationPolicy { regular, accessory, prohibited };

// A running application; shared so that window records keep it alive.
// Only a regular application with a bundle identifier has its windows moved;
// the identifier is what exclusions and saved layouts are keyed on, so it
// must name the same application across runs.
struct RunningApp {
    int32_t pid = 0;
    std::optional<std::string> bundleIdentifier;
    std::optional<std::string> localizedName;
    ActivationPolicy policy = ActivationPolicy::regular;
    std::string icon; // a name the views can load; empty for none
};
using AppRef = std::shared_ptr<const RunningApp>;

// One entry of the window server's list. A key that is missing, or whose value
// has another type, reads as nullopt.
struct WindowListEntry {
    std::optional<int64_t> ownerPid;
    std::optional<int64_t> layer;
    std::optional<Size> bounds; // present only when both width and height are numbers
    std::optional<int64_t> number;
};

// An accessibility element of another process. Opaque to the core. The last
// reference may go on any thread, the main one included (the island keeps
// the windows it offers), so releasing one must neither block nor need a
// particular thread.
class AXElementObject {
  public:
    virtual ~AXElementObject() = default;
};
using AXElement = std::shared_ptr<AXElementObject>;

enum class AXValueType { point = 1, size = 2 };
struct AXValue {
    AXValueType type = AXValueType::point;
    double a = 0, b = 0; // x, y or width, height
};
using AXAttribute = std::variant<std::string, bool, double, AXValue, std::vector<AXElement>>;

// Error codes of the accessibility interface, as the platform reports them.
// The core tells only axSuccess from the rest (and Trust::probe's
// axAPIDisabled): any failure reads as "no value", and what a write answers
// is not looked at.
enum AXError : int32_t {
    axSuccess = 0,
    axFailure = -25200,
    axIllegalArgument = -25201,
    axInvalidUIElement = -25202,
    axCannotComplete = -25204,
    axAttributeUnsupported = -25205,
    axAPIDisabled = -25211,
    axNoValue = -25212,
};

using RemoteToken = std::array<uint8_t, 20>;

// Other applications and their windows. Every call may block for the
// element's messaging timeout, so none is made on the main thread; calls come
// from background threads, from two at once when a layout snapshot overlaps
// a move.
//
// A listing starts with runningApplications(), then ownBundleIdentifier();
// with both optional functions it reads windowList() and scans for the
// windows' elements, otherwise it reads "AXWindows" of createApplication().
// Of each window it reads:
//   "AXSubrole"     string; only "AXStandardWindow" is listed
//   "AXMinimized"   bool; a minimized window is left out
//   "AXPosition"    AXValue point: the top-left corner, from the primary
//                   screen's top-left corner with y growing down
//   "AXSize"        AXValue size
//   "AXTitle"       string; empty when missing
//   "AXFullScreen"  bool; false when missing
//   "AXMaximized"   bool; false when missing, as on a platform without the
//                   state. Writing false must leave the restored frame
//                   readable at once; the core reads it live.
// A window whose subrole, position or size is missing or of another type
// is not listed. These reads may be answered from a snapshot that
// runningApplications() takes. Once the core has written to an element its
// reads must be live: it polls "AXFullScreen" after writing it, until the
// window reports the state asked for, and reads the frame of a window it
// has just taken out of full screen.
//
// A frame is written as "AXSize", "AXPosition", "AXSize" on one element, back
// to back with equal sizes (the second because an application may clamp the
// size to its old display); a platform may send them as one move-and-resize.
// "AXFullScreen" is written as a bool.
class WindowAccess {
  public:
    virtual ~WindowAccess() = default;

    // Every process with a user interface; the core picks the regular ones.
    virtual std::vector<AppRef> runningApplications() = 0;
    virtual std::optional<std::string> ownBundleIdentifier() = 0;
    // All windows of all spaces, desktop elements left out; nullopt when the
    // query fails. The scan looks for entries of layer 0, at least 40 by 40,
    // whose number getWindow() answers for one of the application's elements.
    virtual std::optional<std::vector<WindowListEntry>> windowList() = 0;

    virtual AXElement createApplication(int32_t pid) = 0;
    // How long a call on this element may wait for its process; 0 restores the default.
    virtual AXError setMessagingTimeout(const AXElement& element, double seconds) = 0;
    virtual AXError copyAttribute(const AXElement& element, const std::string& name,
                                  AXAttribute& value) = 0;
    virtual AXError setAttribute(const AXElement& element, const std::string& name,
                                 const AXAttribute& value) = 0;

    // The two optional functions: whether each is found, asked once by the
    // core. A platform without them is listed through "AXWindows" alone.
    virtual bool lookupCreateWithRemoteToken() = 0;
    virtual bool lookupGetWindow() = 0;
    virtual AXElement createWithRemoteToken(const RemoteToken& token) = 0;
    virtual AXError getWindow(const AXElement& element, uint32_t& windowNumber) = 0;
};

} // namespace tarnwick
