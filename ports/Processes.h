#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarnwick {

// Other programs and this process's own end. Main thread only; the errands
// of the first run may block for as long as they take.
class Processes {
  public:
    virtual ~Processes() = default;
    virtual int32_t ownPid() = 0;
    // Clears the mark a download leaves on a program copied to `path` (and on
    // what it holds), with which the platform would isolate the copy again at
    // its next launch. The failure's description; success where downloads
    // carry no such mark.
    virtual std::optional<std::string> clearDownloadMark(const std::string& path) = 0;
    // Makes the platform forget the user's approval of the program with
    // `identifier` to drive other windows, so that the next request asks
    // anew; returns once done. Nothing where no approval is recorded.
    virtual void forgetApproval(const std::string& identifier) = 0;
    // Starts the program at `path` a second from now, from a process of its
    // own that outlives this one, so that it starts once this one has quit
    // (starting it now would only bring this copy to the front). The
    // failure's description when that could not be set going.
    virtual std::optional<std::string> startAfterQuit(const std::string& path) = 0;
    // The polite request to quit: the other process may save and end in its own time.
    virtual void terminate(int32_t pid) = 0;
    // Ends this program, as Quit does; nothing runs after the current main-thread work.
    virtual void quit() = 0;
    // Opens a URL (a settings page, say) with the desktop's handler.
    virtual void open(const std::string& url) = 0;
};

} // namespace tarnwick
