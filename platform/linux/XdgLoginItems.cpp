#include "platform/linux/XdgLoginItems.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <cerrno>
#include <cstring>

namespace tarnwick {

namespace {

// Exec's own quoting: a path with a space or a shell character goes in
// double quotes, with ", `, $ and \ escaped; % is the field-code escape.
// GKeyFile then adds the string-level escaping of backslashes on top.
std::string execQuoted(const std::string& path) {
    std::string out;
    bool quote = path.empty() || path.find_first_of(" \t\n\"'\\><~|&;$*?#()`") != std::string::npos;
    for (char c : path) {
        if (c == '%') {
            out += "%%";
            continue;
        }
        if (quote && (c == '"' || c == '`' || c == '$' || c == '\\')) out += '\\';
        out += c;
    }
    return quote ? "\"" + out + "\"" : out;
}

std::string errnoText(const std::string& path, int error) {
    return path + ": " + std::strerror(error);
}

} // namespace

XdgLoginItems::XdgLoginItems(std::string configHome, std::string execPath)
    : dir_(std::move(configHome) + "/autostart")
    , path_(dir_ + "/tarnwick.desktop")
    , exec_(std::move(execPath)) {}

bool XdgLoginItems::enabled() {
    if (!g_file_test(path_.c_str(), G_FILE_TEST_EXISTS)) return false;
    GKeyFile* file = g_key_file_new();
    bool on = true;
    if (g_key_file_load_from_file(file, path_.c_str(), G_KEY_FILE_NONE, nullptr)) {
        // Hidden=true is how a user's session settings switch an entry off;
        // GNOME's own switch says the same in its key.
        const char* group = G_KEY_FILE_DESKTOP_GROUP;
        if (g_key_file_get_boolean(file, group, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr)) on = false;
        GError* error = nullptr;
        gboolean gnome = g_key_file_get_boolean(file, group, "X-GNOME-Autostart-enabled", &error);
        if (!error && !gnome) on = false;
        g_clear_error(&error);
    }
    g_key_file_free(file);
    return on;
}

std::optional<std::string> XdgLoginItems::registerApp() {
    if (g_mkdir_with_parents(dir_.c_str(), 0700) != 0) return errnoText(dir_, errno);

    GKeyFile* file = g_key_file_new();
    const char* group = G_KEY_FILE_DESKTOP_GROUP;
    g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_TYPE, "Application");
    g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_NAME, "Tarnwick");
    g_key_file_set_string(file, group, G_KEY_FILE_DESKTOP_KEY_EXEC, execQuoted(exec_).c_str());
    g_key_file_set_boolean(file, group, "X-GNOME-Autostart-enabled", TRUE);
    gsize length = 0;
    char* data = g_key_file_to_data(file, &length, nullptr);
    g_key_file_free(file);

    // GLib's own atomic replace: a temp file beside it, fsync, rename.
    GError* error = nullptr;
    std::optional<std::string> failure;
    if (!g_file_set_contents_full(path_.c_str(), data, static_cast<gssize>(length),
                                  static_cast<GFileSetContentsFlags>(
                                      G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_DURABLE),
                                  0644, &error)) {
        failure = error ? error->message : path_ + ": could not be written";
        g_clear_error(&error);
    }
    g_free(data);
    return failure;
}

std::optional<std::string> XdgLoginItems::unregisterApp() {
    if (g_unlink(path_.c_str()) != 0 && errno != ENOENT) return errnoText(path_, errno);
    return std::nullopt;
}

} // namespace tarnwick
