#include "platform/linux/PosixProcesses.h"

// GIO before Qt: Qt's `signals` keyword would break GIO's headers.
#include <gio/gio.h>

#include <QCoreApplication>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace tarnwick {

int32_t PosixProcesses::ownPid() {
    return static_cast<int32_t>(::getpid());
}

std::optional<std::string> PosixProcesses::run(const std::string& path,
                                               const std::vector<std::string>& args, bool wait) {
    std::vector<std::string> argv{path};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<char*> cargv;
    for (auto& a : argv)
        cargv.push_back(a.data());
    cargv.push_back(nullptr);

    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    // A program left running on its own must not end with our terminal or session.
    if (!wait) posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETSID);
    pid_t pid = 0;
    int error = posix_spawn(&pid, path.c_str(), nullptr, &attr, cargv.data(), environ);
    posix_spawnattr_destroy(&attr);
    if (error != 0) return path + ": " + std::strerror(error);

    if (wait) {
        while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
        }
    } else {
        // Someone has to collect its exit, or it stays a zombie until we end.
        std::thread([pid] {
            while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
            }
        }).detach();
    }
    return std::nullopt;
}

std::optional<std::string> PosixProcesses::startAfterQuit(const std::string& path) {
    // The program itself: nothing here starts a program file by its type.
    return run("/bin/sh", {"-c", "sleep 1; exec \"$0\"", path}, false);
}

void PosixProcesses::terminate(int32_t pid) {
    // kill() reads 0 and negative numbers as whole process groups.
    if (pid <= 0) {
        log_.line("processes: not terminating pid " + std::to_string(pid));
        return;
    }
    if (::kill(pid, SIGTERM) != 0)
        log_.line("processes: terminate " + std::to_string(pid) + ": " + std::strerror(errno));
}

void PosixProcesses::quit() {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app) {
        log_.line("processes: quit asked for without an event loop; staying");
        return;
    }
    // Queued, so the work under way on the main thread ends first.
    QMetaObject::invokeMethod(app, &QCoreApplication::quit, Qt::QueuedConnection);
}

void PosixProcesses::open(const std::string& url) {
    GError* error = nullptr;
    if (!g_app_info_launch_default_for_uri(url.c_str(), nullptr, &error))
        log_.line("processes: cannot open " + url + ": " + (error ? error->message : "no handler"));
    g_clear_error(&error);
}

} // namespace tarnwick
