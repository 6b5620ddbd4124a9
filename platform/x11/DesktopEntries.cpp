#include "platform/x11/DesktopEntries.h"

#include <gio/gdesktopappinfo.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>

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

} // namespace

DesktopEntries::DesktopEntries() = default;
DesktopEntries::~DesktopEntries() = default;

const std::vector<DesktopEntries::Known>& DesktopEntries::known() {
    if (known_) return *known_;
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

std::optional<DesktopEntry> DesktopEntries::byId(const std::string& id) {
    std::string bare = withoutSuffix(id);
    if (bare.empty()) return std::nullopt;
    std::lock_guard lock(mu_);
    for (const auto& k : known())
        if (k.entry.id == bare) return k.entry;
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::byWmClass(const std::string& instance,
                                                      const std::string& wmClass) {
    std::lock_guard lock(mu_);
    const auto& all = known();
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

std::optional<DesktopEntry> DesktopEntries::byExecutable(const std::string& path) {
    std::string program = resolved(path);
    if (program.empty()) return std::nullopt;
    std::lock_guard lock(mu_);
    for (const auto& k : known())
        if (k.executable == program) return k.entry;
    return std::nullopt;
}

void DesktopEntries::reload() {
    std::lock_guard lock(mu_);
    known_.reset();
}

} // namespace tarnwick
