#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

// What the desktop knows about an installed application.
struct DesktopEntry {
    std::string id;       // the desktop file id without ".desktop", e.g. "org.gnome.TextEditor"
    std::string name;     // Name, localized
    std::string icon;     // Icon: a theme name or an absolute path
    std::string filename; // the .desktop file
};

// The desktop entries of the XDG data folders, as GIO reads them. Read once
// and kept; safe to call from any thread. A question that finds nothing
// reads them again when an applications folder changed since (an
// application installed while we run is then known by its desktop id, as it
// will be after a restart, rather than by its window class).
class DesktopEntries {
  public:
    DesktopEntries();
    ~DesktopEntries();

    // Accepts "x" or "x.desktop".
    std::optional<DesktopEntry> byId(const std::string& id);
    // The application a window of this WM_CLASS belongs to: StartupWMClass
    // equal to the class or the instance, else a desktop id equal to either
    // (ignoring case), else a reverse-DNS id whose last part is. Entries
    // hidden from menus count: their windows are applications' windows too.
    std::optional<DesktopEntry> byWmClass(const std::string& instance, const std::string& wmClass);
    // The entry that starts the program at `path`.
    std::optional<DesktopEntry> byExecutable(const std::string& path);
    // Forgets what was read; the next question reads the folders again.
    void reload();

  private:
    struct Known {
        DesktopEntry entry;
        std::string wmClass;    // StartupWMClass
        std::string executable; // Exec's program, resolved through PATH and links
    };
    const std::vector<Known>& known(); // under mu_
    // `match` over the entries, and over them read again when it finds
    // nothing and a folder changed.
    std::optional<DesktopEntry>
    find(const std::function<std::optional<DesktopEntry>(const std::vector<Known>&)>& match);
    static std::optional<DesktopEntry> matchWmClass(const std::vector<Known>& all,
                                                    const std::string& instance,
                                                    const std::string& wmClass);
    // Whether an applications folder changed since the entries were read;
    // if so they are forgotten, to be read at the next question. Under mu_.
    bool refreshed();

    std::mutex mu_;
    std::optional<std::vector<Known>> known_;
    // The folders' newest change when the entries were read, in ns; 0 while
    // that change was too recent for GIO to have seen it.
    int64_t readStamp_ = 0;
};

} // namespace tarnwick
