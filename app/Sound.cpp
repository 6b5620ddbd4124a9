#include "app/Sound.h"

#include "prefs/Prefs.h"

namespace tarnwick {

void Sound::play(const std::string& name) {
    if (!prefs_.playSounds()) return;
    auto location = audio_.resource(name, "wav");
    if (!location) return;
    if (playing_) playing_->stop();
    playing_ = audio_.load(*location);
    if (playing_) playing_->play();
}

} // namespace tarnwick
