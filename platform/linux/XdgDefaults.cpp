#include "platform/linux/XdgDefaults.h"

#include <openssl/evp.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using nlohmann::json;

namespace tarnwick {

std::string xdgConfigHome() {
    // The base-directory rules ignore a relative value.
    if (const char* x = std::getenv("XDG_CONFIG_HOME"); x && x[0] == '/') return x;
    if (const char* home = std::getenv("HOME"); home && home[0])
        return std::string(home) + "/.config";
    if (const passwd* pw = getpwuid(getuid()); pw && pw->pw_dir)
        return std::string(pw->pw_dir) + "/.config";
    return "/tmp";
}

namespace {

// JSON has no bytes, so binary values are written as {"$data": base64} and
// turned back into binary on reading; without this a layout snapshot would
// come back as an array of numbers.
constexpr const char* dataKey = "$data";

std::string base64(const std::vector<std::uint8_t>& bytes) {
    std::string out(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()), bytes.data(),
                            static_cast<int>(bytes.size()));
    out.resize(n < 0 ? 0 : static_cast<std::size_t>(n));
    return out;
}

std::optional<std::vector<std::uint8_t>> unbase64(const std::string& text) {
    if (text.size() % 4 != 0) return std::nullopt;
    std::vector<std::uint8_t> out(text.size() / 4 * 3);
    int n = EVP_DecodeBlock(out.data(), reinterpret_cast<const unsigned char*>(text.data()),
                            static_cast<int>(text.size()));
    if (n < 0) return std::nullopt;
    // DecodeBlock counts the padding as zero bytes.
    std::size_t pad = 0;
    if (!text.empty() && text.back() == '=') ++pad;
    if (text.size() > 1 && text[text.size() - 2] == '=') ++pad;
    out.resize(static_cast<std::size_t>(n) - pad);
    return out;
}

json toDisk(const json& v) {
    if (v.is_binary()) return json{{dataKey, base64(v.get_binary())}};
    if (v.is_object()) {
        json out = json::object();
        for (const auto& [k, e] : v.items())
            out[k] = toDisk(e);
        return out;
    }
    if (v.is_array()) {
        json out = json::array();
        for (const auto& e : v)
            out.push_back(toDisk(e));
        return out;
    }
    return v;
}

// Recursion is bounded: the parser refused anything deeper than maxDepth.
json fromDisk(const json& v) {
    if (v.is_object()) {
        if (v.size() == 1 && v.contains(dataKey) && v[dataKey].is_string()) {
            if (auto bytes = unbase64(v[dataKey].get<std::string>()))
                return json::binary(std::move(*bytes));
        }
        json out = json::object();
        for (const auto& [k, e] : v.items())
            out[k] = fromDisk(e);
        return out;
    }
    if (v.is_array()) {
        json out = json::array();
        for (const auto& e : v)
            out.push_back(fromDisk(e));
        return out;
    }
    return v;
}

std::string errnoText(const std::string& path, int error) {
    return path + ": " + std::strerror(error);
}

std::string utcStamp() {
    std::time_t now = std::time(nullptr);
    std::tm tm{};
    gmtime_r(&now, &tm);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y%m%dT%H%M%SZ", &tm);
    return buf;
}

// Closes the descriptor on every path out of a write.
struct Fd {
    int fd = -1;
    ~Fd() {
        if (fd >= 0) ::close(fd);
    }
};

std::optional<std::string> writeAll(int fd, const std::string& data, const std::string& path) {
    std::size_t done = 0;
    while (done < data.size()) {
        ssize_t n = ::write(fd, data.data() + done, data.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return errnoText(path, errno);
        done += static_cast<std::size_t>(n);
    }
    return std::nullopt;
}

} // namespace

XdgDefaults::XdgDefaults(std::string directory, SystemLog& log)
    : dir_(std::move(directory))
    , path_(dir_ + "/defaults.json")
    , log_(log) {
    load();
}

void XdgDefaults::load() {
    int fd = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (errno == ENOENT || errno == ENOTDIR) return; // nothing saved yet
        return moveAside(std::strerror(errno));
    }
    std::string text;
    char buf[65536];
    int error = 0;
    for (;;) {
        ssize_t n = ::read(fd, buf, sizeof buf);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) error = errno;
        if (n <= 0) break;
        text.append(buf, static_cast<std::size_t>(n));
    }
    ::close(fd);
    if (error) return moveAside(std::strerror(error));

    // The parser takes a NUL byte for the end of the text and would keep what
    // comes before it; the next save would then drop the rest of the file.
    if (text.find('\0') != std::string::npos) return moveAside("a NUL byte in the text");

    bool tooDeep = false;
    auto limit = [&tooDeep](int depth, json::parse_event_t event, json&) {
        // `depth` counts the containers around this one; past the limit the
        // value is dropped rather than built, and the whole file is refused.
        if ((event == json::parse_event_t::object_start ||
             event == json::parse_event_t::array_start) &&
            depth >= maxDepth) {
            tooDeep = true;
            return false;
        }
        return !tooDeep;
    };
    json doc = json::parse(text, limit, /*allow_exceptions=*/false);
    if (tooDeep) return moveAside("nested deeper than " + std::to_string(maxDepth) + " levels");
    if (doc.is_discarded()) return moveAside("not JSON");
    if (!doc.is_object()) return moveAside("not a JSON object");
    user_ = fromDisk(doc);
}

void XdgDefaults::moveAside(const std::string& reason) {
    std::string stamp = utcStamp();
    std::string aside = path_ + ".corrupt-" + stamp;
    // Two bad starts within a second must not overwrite the first one kept.
    for (int i = 1; ::access(aside.c_str(), F_OK) == 0 && i < 100; ++i)
        aside = path_ + ".corrupt-" + stamp + "-" + std::to_string(i);
    if (::rename(path_.c_str(), aside.c_str()) == 0) {
        log_.line("defaults: " + path_ + " unreadable (" + reason + "), moved to " + aside +
                  "; starting from the defaults");
        return;
    }
    readOnly_ = true;
    log_.line("defaults: " + path_ + " unreadable (" + reason + ") and could not be moved aside (" +
              std::strerror(errno) + "); changes will not be saved");
}

void XdgDefaults::registerDefaults(const std::map<std::string, DefaultsValue>& values) {
    std::lock_guard lock(mu_);
    for (const auto& [k, v] : values)
        registered_[k] = v;
}

std::optional<DefaultsValue> XdgDefaults::object(const std::string& key) {
    std::lock_guard lock(mu_);
    if (auto it = user_.find(key); it != user_.end()) return *it;
    if (auto it = registered_.find(key); it != registered_.end()) return it->second;
    return std::nullopt;
}

void XdgDefaults::set(const std::string& key, const DefaultsValue& value) {
    std::optional<std::string> error;
    {
        std::lock_guard lock(mu_);
        // Layout snapshots store the same value again and again; only a change costs a write.
        if (auto it = user_.find(key); it != user_.end() && *it == value) return;
        user_[key] = value;
        error = write();
    }
    if (error) log_.line("defaults: could not save " + key + ": " + *error);
}

void XdgDefaults::remove(const std::string& key) {
    std::optional<std::string> error;
    {
        std::lock_guard lock(mu_);
        if (user_.erase(key) == 0) return;
        error = write();
    }
    if (error) log_.line("defaults: could not save the removal of " + key + ": " + *error);
}

std::optional<std::string> XdgDefaults::write() {
    if (readOnly_) return "the unreadable " + path_ + " is kept as it is";

    if (::mkdir(dir_.c_str(), 0700) != 0 && errno != EEXIST) {
        if (errno != ENOENT) return errnoText(dir_, errno);
        std::error_code ec;
        fs::create_directories(fs::path(dir_).parent_path(), ec);
        if (ec) return fs::path(dir_).parent_path().string() + ": " + ec.message();
        if (::mkdir(dir_.c_str(), 0700) != 0 && errno != EEXIST) return errnoText(dir_, errno);
    }

    // A second running copy writes the same file: one whole write at a time.
    std::string lockPath = dir_ + "/defaults.lock";
    Fd lockFd{::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)};
    if (lockFd.fd < 0) return errnoText(lockPath, errno);
    while (::flock(lockFd.fd, LOCK_EX) != 0)
        if (errno != EINTR) return errnoText(lockPath, errno);

    std::string text = toDisk(user_).dump(2, ' ', false, json::error_handler_t::replace) + "\n";
    std::string temp = dir_ + "/.defaults.json.XXXXXX";
    Fd out{::mkostemp(temp.data(), O_CLOEXEC)}; // mode 0600
    if (out.fd < 0) return errnoText(temp, errno);
    auto fail = [&temp](std::string message) {
        ::unlink(temp.c_str());
        return std::optional<std::string>(std::move(message));
    };
    if (auto e = writeAll(out.fd, text, temp)) return fail(*e);
    if (::fsync(out.fd) != 0) return fail(errnoText(temp, errno));
    ::close(out.fd);
    out.fd = -1;

    // The previous good document stays within reach of a user whose newest one went wrong.
    std::string backup = path_ + "~";
    if (::access(path_.c_str(), F_OK) == 0) {
        ::unlink(backup.c_str());
        if (::link(path_.c_str(), backup.c_str()) != 0) {
            std::error_code ec;
            fs::copy_file(path_, backup, fs::copy_options::overwrite_existing, ec);
        }
    }
    if (::rename(temp.c_str(), path_.c_str()) != 0) return fail(errnoText(path_, errno));
    // The rename itself reaches the disk only with the directory.
    Fd dirFd{::open(dir_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (dirFd.fd >= 0) ::fsync(dirFd.fd);
    return std::nullopt;
}

} // namespace tarnwick
