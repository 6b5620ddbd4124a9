#include "platform/sim/SimFiles.h"

#include "base/JsonText.h"

namespace tarnwick::sim {

namespace {

std::string lastComponent(const std::string& path) {
    auto p = SimWorld::normalized(path);
    auto slash = p.rfind('/');
    return slash == std::string::npos || p == "/" ? p : p.substr(slash + 1);
}

std::string parent(const std::string& path) {
    auto p = SimWorld::normalized(path);
    auto slash = p.rfind('/');
    return slash == std::string::npos || slash == 0 ? "/" : p.substr(0, slash);
}

std::string noPermission(const std::string& name, const std::string& folder) {
    return "You don\u2019t have permission to save the file \u201c" + name +
           "\u201d in the folder \u201c" + folder + "\u201d.";
}

std::string noSuchFile(const std::string& name) {
    return "The file \u201c" + name +
           "\u201d couldn\u2019t be opened because there is no such file.";
}

} // namespace

std::string SimFiles::displayName(const std::string& path) {
    w_.dispatch.requireMain("Files::displayName");
    auto name = lastComponent(path);
    const std::string app = ".app";
    if (name.size() > app.size() && name.compare(name.size() - app.size(), app.size(), app) == 0)
        name.resize(name.size() - app.size());
    return name;
}

std::optional<std::string> SimFiles::done(const std::string& what,
                                          std::optional<std::string> error) {
    w_.transcript.line("file", what + (error ? " failed " + tarnwick::quoted(*error) : ""));
    return error;
}

// The refusals below word the failure as the platform's file manager does.

std::optional<std::string> SimFiles::createDirectory(const std::string& path) {
    w_.dispatch.requireMain("Files::createDirectory");
    const std::string what = "mkdir " + tarnwick::quoted(path);
    if (auto error = w_.takeFailure(SimWorld::Operation::mkdir)) return done(what, error);
    if (w_.exists(path)) return done(what, std::nullopt);
    // Missing parents are made too, so the nearest folder that exists decides.
    auto folder = parent(path);
    while (folder != "/" && !w_.exists(folder))
        folder = parent(folder);
    if (!w_.isWritable(folder))
        return done(what, noPermission(lastComponent(path), displayName(folder)));
    w_.create(path);
    return done(what, std::nullopt);
}

std::optional<std::string> SimFiles::trash(const std::string& path) {
    w_.dispatch.requireMain("Files::trash");
    const std::string what = "trash " + tarnwick::quoted(path);
    if (auto error = w_.takeFailure(SimWorld::Operation::trash)) return done(what, error);
    if (!w_.exists(path)) return done(what, noSuchFile(displayName(path)));
    if (!w_.isWritable(parent(path)))
        return done(what, "The file \u201c" + displayName(path) +
                              "\u201d couldn\u2019t be moved to the Trash because you don\u2019t "
                              "have permission to access it.");
    w_.erase(path);
    return done(what, std::nullopt);
}

std::optional<std::string> SimFiles::copy(const std::string& from, const std::string& to) {
    w_.dispatch.requireMain("Files::copy");
    const std::string what = "copy " + tarnwick::quoted(from) + " " + tarnwick::quoted(to);
    if (auto error = w_.takeFailure(SimWorld::Operation::copy)) return done(what, error);
    const auto source = SimWorld::normalized(from), target = SimWorld::normalized(to);
    if (!w_.exists(source)) return done(what, noSuchFile(displayName(source)));
    if (w_.exists(target))
        return done(what, "\u201c" + displayName(source) +
                              "\u201d couldn\u2019t be copied to \u201c" +
                              displayName(parent(target)) +
                              "\u201d because an item with the same name already exists.");
    if (!w_.exists(parent(target))) return done(what, noSuchFile(displayName(parent(target))));
    if (!w_.isWritable(parent(target)))
        return done(what, noPermission(lastComponent(target), displayName(parent(target))));
    std::vector<std::string> below;
    for (const auto& p : w_.paths)
        if (SimWorld::isUnder(p, source)) below.push_back(target + p.substr(source.size()));
    for (const auto& p : below)
        w_.create(p);
    return done(what, std::nullopt);
}

} // namespace tarnwick::sim
