#include "platform/sim/SimAudio.h"

namespace tarnwick::sim {

namespace {

class Clip : public AudioClip {
  public:
    Clip(SimDispatch& d, Transcript& t, std::string name)
        : d_(d)
        , t_(t)
        , name_(std::move(name)) {}
    void play() override {
        d_.requireMain("AudioClip::play");
        t_.line("sound", name_);
    }
    void stop() override {
        d_.requireMain("AudioClip::stop");
        t_.line("sound", "stop");
    }

  private:
    SimDispatch& d_;
    Transcript& t_;
    std::string name_;
};

} // namespace

std::optional<std::string> SimAudio::resource(const std::string& name,
                                              const std::string& extension) {
    w_.dispatch.requireMain("Audio::resource");
    auto it = w_.resources.find(name);
    if (extension != "wav" || it == w_.resources.end() || it->second == SimWorld::Resource::missing)
        return std::nullopt;
    return w_.bundlePath + "/Contents/Resources/" + name + ".wav";
}

std::shared_ptr<AudioClip> SimAudio::load(const std::string& location) {
    w_.dispatch.requireMain("Audio::load");
    auto slash = location.rfind('/');
    auto name = location.substr(slash == std::string::npos ? 0 : slash + 1);
    if (name.size() > 4) name.resize(name.size() - 4);
    auto it = w_.resources.find(name);
    if (it == w_.resources.end() || it->second != SimWorld::Resource::present) return nullptr;
    return std::make_shared<Clip>(w_.dispatch, w_.transcript, name);
}

} // namespace tarnwick::sim
