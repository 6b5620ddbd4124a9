#pragma once

#include <memory>
#include <optional>
#include <string>

namespace tarnwick {

class AudioClip {
  public:
    virtual ~AudioClip() = default;
    virtual void play() = 0; // starts and returns at once
    virtual void stop() = 0;
};

// The chimes. Main thread only, clips included. The core keeps the clip it
// plays, and stops it before it loads the next one.
class Audio {
  public:
    virtual ~Audio() = default;
    // Where a bundled resource lies, or nullopt when it is missing.
    virtual std::optional<std::string> resource(const std::string& name,
                                                const std::string& extension) = 0;
    // The sound at `location`, read by reference; nullptr when it is not readable as sound.
    virtual std::shared_ptr<AudioClip> load(const std::string& location) = 0;
};

} // namespace tarnwick
