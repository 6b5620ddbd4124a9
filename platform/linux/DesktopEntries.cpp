#include "platform/linux/DesktopEntries.h"

#include <gio/gdesktopappinfo.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>
#include <sys/stat.h>
#include <time.h>

namespace tarnwick {

namespace {

const std::string suffix = ".desktop";

std::string withoutSuffix(std::string id) {
    if (id.size() > suffix.size() && id.ends_with(suffix)) id.resize(id.size() - suffix.size());
    return id;
}

bool equalIgnoringCase(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return g_ascii_tolower(x) == g_ascii_tolower(y);
           });
}

// The file a program path finally names, so /usr/bin/foo and the
// /usr/lib/foo/foo it links to are the same program.
std::string resolved(const std::string& path) {
    if (path.empty()) return {};
    char* found = g_find_program_in_path(path.c_str());
    if (!found) return {};
    std::string out = found;
    g_free(found);
    if (char* real = realpath(out.c_str(), nullptr)) {
        out = real;
        std::free(real);
    }
    return out;
}

std::string text(const char* s) {
    return s ? s : "";
}

int64_t nanoseconds(const timespec& t) {
    return static_cast<int64_t>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

// The newest change to any of the folders GIO reads entries from (a file
// added, removed or renamed in one), or to their parents when they do not
// exist yet. A stat each: cheap enough for every question that finds nothing.
int64_t foldersStamp() {
    int64_t newest = 0;
    auto look = [&newest](const std::string& data) {
        struct stat st {};
        for (const std::string& path : {data + "/applications", data})
            if (::stat(path.c_str(), &st) == 0) {
                newest = std::max(newest, nanoseconds(st.st_mtim));
                return;
            }
    };
    look(g_get_user_data_dir());
    for (const char* const* dir = g_get_system_data_dirs(); *dir; ++dir)
        look(*dir);
    return newest;
}

int64_t realtimeNow() {
    timespec t{};
    clock_gettime(CLOCK_REALTIME, &t);
    return nanoseconds(t);
}

// GIO learns of a new entry from a file monitor on a thread of its own,
// a moment after the folder changed; until a change is that old, a read
// may miss it and does not count as having seen it.
constexpr int64_t gioCatchesUp = 2'000'000'000;

} // namespace

DesktopEntries::DesktopEntries() = default;
DesktopEntries::~DesktopEntries() = default;

const std::vector<DesktopEntries::Known>& DesktopEntries::known() {
    if (known_) return *known_;
    const int64_t stamp = foldersStamp();
    const int64_t age = realtimeNow() - stamp;
    readStamp_ = age >= 0 && age < gioCatchesUp ? 0 : stamp;
    known_.emplace();
    // NoDisplay entries are included; GIO leaves out only those marked
    // Hidden, which freedesktop.org's desktop entry format defines as deleted.
    GList* all = g_app_info_get_all();
    for (GList* l = all; l; l = l->next) {
        auto* info = static_cast<GAppInfo*>(l->data);
        if (!G_IS_DESKTOP_APP_INFO(info)) continue;
        auto* desktop = G_DESKTOP_APP_INFO(info);
        Known k;
        k.entry.id = withoutSuffix(text(g_app_info_get_id(info)));
        k.entry.name = text(g_app_info_get_name(info));
        if (char* icon = g_desktop_app_info_get_string(desktop, G_KEY_FILE_DESKTOP_KEY_ICON)) {
            k.entry.icon = icon;
            g_free(icon);
        }
        k.entry.filename = text(g_desktop_app_info_get_filename(desktop));
        k.wmClass = text(g_desktop_app_info_get_startup_wm_class(desktop));
        k.executable = resolved(text(g_app_info_get_executable(info)));
        known_->push_back(std::move(k));
    }
    g_list_free_full(all, g_object_unref);
    return *known_;
}

bool DesktopEntries::refreshed() {
    if (!known_ || foldersStamp() == readStamp_) return false;
    known_.reset();
    return true;
}

std::optional<DesktopEntry> DesktopEntries::find(
    const std::function<std::optional<DesktopEntry>(const std::vector<Known>&)>& match) {
    std::lock_guard lock(mu_);
    if (auto e = match(known())) return e;
    // Perhaps installed since the entries were read.
    if (!refreshed()) return std::nullopt;
    return match(known());
}

std::optional<DesktopEntry> DesktopEntries::byId(const std::string& id) {
    std::string bare = withoutSuffix(id);
    if (bare.empty()) return std::nullopt;
    return find([&bare](const std::vector<Known>& all) -> std::optional<DesktopEntry> {
        for (const auto& k : all)
            if (k.entry.id == bare) return k.entry;
        return std::nullopt;
    });
}

std::optional<DesktopEntry> DesktopEntries::matchWmClass(const std::vector<Known>& all,
                                                         const std::string& instance,
                                                         const std::string& wmClass) {
    auto first =
        [&all](const std::function<bool(const Known&)>& match) -> std::optional<DesktopEntry> {
        for (const auto& k : all)
            if (match(k)) return k.entry;
        return std::nullopt;
    };
    // From the most deliberate statement to the loosest guess: the entry's
    // own StartupWMClass, then the id, then the id's last part
    // ("org.gnome.Nautilus" for class "Nautilus").
    for (const std::string* name : {&wmClass, &instance}) {
        if (name->empty()) continue;
        if (auto e = first([name](const Known& k) { return k.wmClass == *name; })) return e;
    }
    for (const std::string* name : {&wmClass, &instance}) {
        if (name->empty()) continue;
        if (auto e = first([name](const Known& k) { return equalIgnoringCase(k.entry.id, *name); }))
            return e;
    }
    for (const std::string* name : {&wmClass, &instance}) {
        if (name->empty()) continue;
        auto lastPart = [name](const Known& k) {
            auto dot = k.entry.id.rfind('.');
            return dot != std::string::npos && equalIgnoringCase(k.entry.id.substr(dot + 1), *name);
        };
        if (auto e = first(lastPart)) return e;
    }
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::byWmClass(const std::string& instance,
                                                      const std::string& wmClass) {
    return find(
        [&](const std::vector<Known>& all) { return matchWmClass(all, instance, wmClass); });
}

std::optional<DesktopEntry> DesktopEntries::byExecutable(const std::string& path) {
    std::string program = resolved(path);
    if (program.empty()) return std::nullopt;
    return find([&program](const std::vector<Known>& all) -> std::optional<DesktopEntry> {
        for (const auto& k : all)
            if (k.executable == program) return k.entry;
        return std::nullopt;
    });
}

void DesktopEntries::reload() {
    std::lock_guard lock(mu_);
    known_.reset();
}

} // namespace tarnwick
