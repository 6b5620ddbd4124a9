#include "platform/linux/PosixFiles.h"

#include <gio/gio.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace tarnwick {

namespace {

std::string failure(const std::string& path, const std::error_code& ec) {
    return path + ": " + ec.message();
}

// GIO's messages mostly name the file already; the rest get it in front.
std::string naming(const std::string& path, const GError* error) {
    std::string message = error ? error->message : "failed";
    return message.find(path) != std::string::npos ? message : path + ": " + message;
}

} // namespace

std::string PosixFiles::homeDirectory() {
    return g_get_home_dir();
}

bool PosixFiles::isWritable(const std::string& path) {
    return ::access(path.c_str(), W_OK) == 0;
}

bool PosixFiles::exists(const std::string& path) {
    // A dangling link is still something in the way of a copy.
    std::error_code ec;
    return fs::exists(fs::symlink_status(path, ec));
}

std::optional<std::string> PosixFiles::createDirectory(const std::string& path) {
    std::error_code ec;
    fs::create_directories(path, ec);
    if (ec) return failure(path, ec);
    if (!fs::is_directory(path, ec))
        return failure(path, std::make_error_code(std::errc::not_a_directory));
    return std::nullopt;
}

std::optional<std::string> PosixFiles::trash(const std::string& path) {
    GFile* file = g_file_new_for_path(path.c_str());
    GError* error = nullptr;
    std::optional<std::string> result;
    if (!g_file_trash(file, nullptr, &error)) result = naming(path, error);
    g_clear_error(&error);
    g_object_unref(file);
    return result;
}

std::optional<std::string> PosixFiles::copy(const std::string& from, const std::string& to) {
    std::error_code ec;
    if (!fs::exists(fs::symlink_status(from, ec))) {
        return failure(from, std::make_error_code(std::errc::no_such_file_or_directory));
    }
    if (exists(to)) return failure(to, std::make_error_code(std::errc::file_exists));

    fs::path target(to);
    std::string partial =
        (target.parent_path() / ("." + target.filename().string() + ".partial-XXXXXX")).string();
    if (!::mkdtemp(partial.data()))
        return failure(to, std::error_code(errno, std::generic_category()));
    fs::path staging = fs::path(partial) / "copy";
    fs::copy(from, staging, fs::copy_options::recursive | fs::copy_options::copy_symlinks, ec);
    if (!ec) fs::rename(staging, target, ec);
    std::error_code ignored;
    fs::remove_all(partial, ignored);
    if (ec) return failure(to, ec);
    return std::nullopt;
}

std::string PosixFiles::displayName(const std::string& path) {
    GFile* file = g_file_new_for_path(path.c_str());
    GFileInfo* info = g_file_query_info(file, G_FILE_ATTRIBUTE_STANDARD_DISPLAY_NAME,
                                        G_FILE_QUERY_INFO_NONE, nullptr, nullptr);
    std::string name;
    if (info) {
        if (const char* n = g_file_info_get_display_name(info)) name = n;
        g_object_unref(info);
    }
    if (name.empty()) {
        char* base = g_file_get_basename(file);
        if (base) name = base;
        g_free(base);
    }
    g_object_unref(file);
    return name;
}

} // namespace tarnwick
