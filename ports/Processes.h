#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// Other programs and this process's own end. Main thread only.
class Processes {
  public:
    virtual ~Processes() = default;
    virtual int32_t ownPid() = 0;
    // Starts the program at `path`; with `wait`, blocks until it exits (its
    // exit status is not looked at). The failure's description when it
    // could not be started.
    virtual std::optional<std::string> run(const std::string& path,
                                           const std::vector<std::string>& args, bool wait) = 0;
    // The polite request to quit: the other process may save and end in its own time.
    virtual void terminate(int32_t pid) = 0;
    // Ends this program, as Quit does; nothing runs after the current main-thread work.
    virtual void quit() = 0;
    // Opens a URL (a settings page, say) with the desktop's handler.
    virtual void open(const std::string& url) = 0;
};

} // namespace tarnwick
