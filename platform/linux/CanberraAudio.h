#pragma once

#include "ports/Audio.h"
#include "ports/SystemLog.h"

#include <memory>
#include <string>
#include <vector>

namespace tarnwick {

// Sounds through libcanberra, the freedesktop event-sound library: it plays
// a file on the session's sound server, or straight through ALSA.
class CanberraAudio : public Audio {
  public:
    // `resourceDirs` are searched in order for bundled sounds.
    CanberraAudio(std::vector<std::string> resourceDirs, SystemLog& log);
    ~CanberraAudio() override;

    std::optional<std::string> resource(const std::string& name,
                                        const std::string& extension) override;
    // A clip for a readable WAV file, else nullptr.
    std::shared_ptr<AudioClip> load(const std::string& location) override;

    class Player; // the one context, shared with the clips it made

  private:
    std::vector<std::string> dirs_;
    std::shared_ptr<Player> player_;
};

} // namespace tarnwick
