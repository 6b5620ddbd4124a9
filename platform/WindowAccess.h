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

// An accessibility element of another process. Opaque to the core.
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

// Other applications and their windows. Every call may block for the element's
// messaging timeout; none is made on the main thread.
class WindowAccess {
  public:
    virtual ~WindowAccess() = default;

    virtual std::vector<AppRef> runningApplications() = 0;
    virtual std::optional<std::string> ownBundleIdentifier() = 0;
    // All windows of all spaces, desktop elements left out; nullopt when the query fails.
    virtual std::optional<std::vector<WindowListEntry>> windowList() = 0;

    virtual AXElement createApplication(int32_t pid) = 0;
    virtual AXError setMessagingTimeout(const AXElement& element, double seconds) = 0;
    virtual AXError copyAttribute(const AXElement& element, const std::string& name,
                                  AXAttribute& value) = 0;
    virtual AXError setAttribute(const AXElement& element, const std::string& name,
                                 const AXAttribute& value) = 0;

    // The two optional functions: whether each is found, asked once by the core.
    virtual bool lookupCreateWithRemoteToken() = 0;
    virtual bool lookupGetWindow() = 0;
    virtual AXElement createWithRemoteToken(const RemoteToken& token) = 0;
    virtual AXError getWindow(const AXElement& element, uint32_t& windowNumber) = 0;
};

} // namespace tarnwick
