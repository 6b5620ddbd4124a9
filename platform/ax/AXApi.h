#pragma once

#include "base/Geometry.h"
#include "ports/WindowAccess.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarnwick::ax {

// One entry of the window server's list. A key that is missing, or whose value
// has another type, reads as nullopt.
struct WindowListEntry {
    std::optional<int64_t> ownerPid;
    std::optional<int64_t> layer;
    std::optional<Size> bounds; // present only when both width and height are numbers
    std::optional<int64_t> number;
};

// An accessibility element of another process. The last reference may go on
// any thread (see WindowHandle), so releasing one must neither block nor need
// a particular thread. A window's element is the handle the core holds, so a
// listing allocates nothing more per window.
class AXElementObject : public WindowHandle {};
using AXElement = std::shared_ptr<AXElementObject>;

enum class AXValueType { point = 1, size = 2 };
struct AXValue {
    AXValueType type = AXValueType::point;
    double a = 0, b = 0; // x, y or width, height
};
using AXAttribute = std::variant<std::string, bool, double, AXValue, std::vector<AXElement>>;

// Error codes of the accessibility interface, as the platform reports them.
// The adapter tells only axSuccess from the rest: any failure reads as "no
// value", and what a write answers is not looked at.
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

// Other applications and their windows through an accessibility interface:
// elements, string-named attributes, and a window server's list. Every call
// may block for the element's messaging timeout, so none is made on the main
// thread; calls come from background threads, from two at once.
//
// A listing (AXWindows::list) starts with runningApplications(); with both
// optional functions it reads windowList() and scans for the windows'
// elements, otherwise it reads "AXWindows" of createApplication(). Of each
// window it reads:
//   "AXSubrole"     string; only "AXStandardWindow" is listed
//   "AXMinimized"   bool; a minimized window is left out
//   "AXPosition"    AXValue point: the top-left corner, from the primary
//                   screen's top-left corner with y growing down
//   "AXSize"        AXValue size
//   "AXTitle"       string; empty when missing
//   "AXFullScreen"  bool; false when missing
//   "AXMaximized"   bool; false when missing, as on a platform without the
//                   state. Writing false must leave the restored frame
//                   readable at once; it is read live next.
// A window whose subrole, position or size is missing or of another type
// is not listed. These reads may be answered from a snapshot that
// runningApplications() takes. Once an element has been written to its
// reads must be live: "AXFullScreen" is polled after it is written, until
// the window reports the state asked for, and the frame of a window just
// taken out of full screen is read.
//
// A frame is written as "AXSize", "AXPosition", "AXSize" on one element, back
// to back with equal sizes (the second because an application may clamp the
// size to its old display). "AXFullScreen" and "AXMaximized" are written as
// a bool.
class AXApi {
  public:
    virtual ~AXApi() = default;

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

    // The two optional functions: whether each is found, asked once per
    // adapter. A platform without them is listed through "AXWindows" alone.
    virtual bool lookupCreateWithRemoteToken() = 0;
    virtual bool lookupGetWindow() = 0;
    virtual AXElement createWithRemoteToken(const RemoteToken& token) = 0;
    virtual AXError getWindow(const AXElement& element, uint32_t& windowNumber) = 0;
};

} // namespace tarnwick::ax
