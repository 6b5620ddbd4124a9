#pragma once

#include "platform/ax/AXApi.h"
#include "ports/Dispatch.h"
#include "ports/WindowAccess.h"

#include <mutex>

namespace tarnwick::ax {

// The program's window port over an accessibility interface: windows found
// by a remote-token scan of the window server's list (or, without the
// private functions, through "AXWindows"), read one attribute at a time,
// written as attributes. Waits go through the dispatch, so that tests run on
// virtual time.
class AXWindows : public WindowAccess {
  public:
    // How long one read or write may wait for an application: an application
    // that does not answer costs this much per element it is asked about.
    static constexpr double messagingTimeout = 0.5;
    // Element ids tried per application before the scan gives up on the
    // windows it has not found.
    static constexpr int scanLimit = 4000;

    AXWindows(AXApi& ax, Dispatch& dispatch)
        : ax_(ax)
        , dispatch_(dispatch) {}

    std::optional<std::string> ownIdentifier() override { return ax_.ownBundleIdentifier(); }
    std::vector<AppWindow> list(const std::function<bool(const RunningApp&)>& wanted) override;
    void place(const WindowRef& window, const Rect& frame) override;
    bool setFullscreen(const WindowRef& window, bool on) override;
    void setMaximized(const WindowRef& window, bool on) override;
    std::optional<Rect> frame(const WindowRef& window) override;

    // The token that names element `elementId` of process `pid`.
    static RemoteToken remoteToken(int32_t pid, uint64_t elementId);
    // The element behind a listed window; null for a window of another platform.
    static AXElement element(const WindowRef& window);

  private:
    template <typename T> std::optional<T> attr(const AXElement& el, const std::string& name);
    std::optional<AXValue> value(const AXElement& el, const std::string& name);
    std::optional<Rect> readFrame(const AXElement& el);
    std::vector<AXElement> scan(int32_t pid, const std::vector<WindowListEntry>& list);
    void resolvePrivate();

    AXApi& ax_;
    Dispatch& dispatch_;
    std::once_flag resolved_;
    bool createWithRemoteToken_ = false;
    bool getWindowID_ = false;
};

} // namespace tarnwick::ax
