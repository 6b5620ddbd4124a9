#include "platform/linux/CanberraAudio.h"

#include <canberra.h>

#include <atomic>
#include <cstring>
#include <fstream>
#include <mutex>
#include <sys/stat.h>

namespace tarnwick {

// One ca_context, used from whichever thread plays; clips keep it alive.
class CanberraAudio::Player {
  public:
    explicit Player(SystemLog& log)
        : log_(log) {
        if (int r = ca_context_create(&ctx_); r < 0) {
            ctx_ = nullptr;
            failed("no sound", r);
            return;
        }
        ca_context_change_props(ctx_, CA_PROP_APPLICATION_NAME, "Tarnwick", CA_PROP_APPLICATION_ID,
                                "tarnwick", nullptr);
    }
    ~Player() {
        if (ctx_) ca_context_destroy(ctx_);
    }
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    uint32_t newId() { return nextId_++; }

    void play(uint32_t id, const std::string& path) {
        std::lock_guard lock(mu_);
        if (!ctx_) return;
        // Playing again starts over rather than layering a second copy.
        ca_context_cancel(ctx_, id);
        ca_proplist* props = nullptr;
        if (ca_proplist_create(&props) < 0) return;
        ca_proplist_sets(props, CA_PROP_MEDIA_FILENAME, path.c_str());
        ca_proplist_sets(props, CA_PROP_MEDIA_ROLE, "event");
        int r = ca_context_play_full(ctx_, id, props, nullptr, nullptr);
        ca_proplist_destroy(props);
        if (r < 0) failed("cannot play " + path, r);
    }

    void stop(uint32_t id) {
        std::lock_guard lock(mu_);
        if (ctx_) ca_context_cancel(ctx_, id);
    }

  private:
    // A machine without a sound device fails every play the same way: say so once.
    void failed(const std::string& what, int code) {
        if (logged_) return;
        logged_ = true;
        log_.line("sound: " + what + ": " + ca_strerror(code));
    }

    SystemLog& log_;
    std::mutex mu_;
    ca_context* ctx_ = nullptr;
    bool logged_ = false;
    std::atomic<uint32_t> nextId_{1};
};

namespace {

class CanberraClip : public AudioClip {
  public:
    CanberraClip(std::shared_ptr<CanberraAudio::Player> player, std::string path)
        : player_(std::move(player))
        , path_(std::move(path))
        , id_(player_->newId()) {}

    void play() override { player_->play(id_, path_); }
    void stop() override { player_->stop(id_); }

  private:
    std::shared_ptr<CanberraAudio::Player> player_;
    std::string path_;
    uint32_t id_;
};

bool isRegularFile(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// The RIFF container's header naming WAVE as its form.
bool looksLikeWav(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char header[12] = {};
    if (!in.read(header, sizeof header)) return false;
    return std::memcmp(header, "RIFF", 4) == 0 && std::memcmp(header + 8, "WAVE", 4) == 0;
}

} // namespace

CanberraAudio::CanberraAudio(std::vector<std::string> resourceDirs, SystemLog& log)
    : dirs_(std::move(resourceDirs))
    , player_(std::make_shared<Player>(log)) {}

CanberraAudio::~CanberraAudio() = default;

std::optional<std::string> CanberraAudio::resource(const std::string& name,
                                                   const std::string& extension) {
    for (const auto& dir : dirs_) {
        std::string path = dir + "/" + name + "." + extension;
        if (isRegularFile(path)) return path;
    }
    return std::nullopt;
}

std::shared_ptr<AudioClip> CanberraAudio::load(const std::string& location) {
    if (!isRegularFile(location) || !looksLikeWav(location)) return nullptr;
    return std::make_shared<CanberraClip>(player_, location);
}

} // namespace tarnwick
