#pragma once

#include "ports/Audio.h"

#include <memory>
#include <string>

namespace tarnwick {

class Prefs;

// The connect and disconnect chimes. A new chime cuts off the one still sounding.
class Sound {
  public:
    Sound(Audio& audio, const Prefs& prefs)
        : audio_(audio)
        , prefs_(prefs) {}

    void play(const std::string& name);

  private:
    Audio& audio_;
    const Prefs& prefs_;
    std::shared_ptr<AudioClip> playing_; // held so it is not released while it sounds
};

} // namespace tarnwick
