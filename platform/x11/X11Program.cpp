#include "platform/x11/X11Program.h"

#include "app/App.h"
#include "platform/linux/CanberraAudio.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/LogSurfaces.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/PosixProcesses.h"
#include "platform/linux/QtDispatch.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/StderrLog.h"
#include "platform/linux/XdgDefaults.h"
#include "platform/linux/XdgLoginItems.h"
#include "platform/quick/QuickSurfaces.h"
#include "platform/quick/Tray.h"
#include "platform/x11/PanelWindows.h"
#include "platform/x11/X11Notifications.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/X11Trust.h"
#include "platform/x11/X11Windows.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/XConnection.h"

#include <QApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace tarnwick::x11 {

namespace {

int signalPipe[2] = {-1, -1};

// Qt's xcb plugin calls exit(1) itself when its connection breaks, from
// inside the event loop, and may notice before our own connection does:
// static destructors would then run while our threads and the core still live
// on main's stack. Ended that way, the program says why and leaves at once.
tarnwick::SystemLog* exitLog = nullptr;
bool leftEventLoop = false;

void onExit() {
    if (leftEventLoop) return;
    if (exitLog) exitLog->line("Lost the connection to the X server");
    std::_Exit(1);
}

void onSignal(int) {
    const char byte = 1;
    (void)!::write(signalPipe[1], &byte, 1);
}

} // namespace

int run(char** argv, const std::vector<std::string>& args, const std::string& executable,
        const std::vector<std::string>& sounds) {
    using namespace tarnwick::xdg;
    const char* display = std::getenv("DISPLAY");
    StderrLog log;
    std::string error;
    auto main = XConnection::open(nullptr, error);
    auto background = main ? XConnection::open(nullptr, error) : nullptr;
    if (!main || !background) {
        std::cerr << "tarnwick: " << error << "\n";
        return 1;
    }
    // Qt draws on the same display; the platform plugin is ours to choose.
    qputenv("QT_QPA_PLATFORM", "xcb");
    // The views are small and mostly still: Qt Quick's software renderer
    // draws them without loading a GL driver (tens of megabytes, and threads).
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")) qputenv("QT_QUICK_BACKEND", "software");
    int qtArgc = 1;
    QApplication qt(qtArgc, argv);
    QApplication::setApplicationName("Tarnwick");
    QApplication::setDesktopFileName(X11Workspace::identifier);
    QApplication::setQuitOnLastWindowClosed(false);
    exitLog = &log;
    std::atexit(onExit);

    // SIGTERM and SIGINT end the event loop like Quit does.
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalPipe) == 0) {
        std::signal(SIGTERM, onSignal);
        std::signal(SIGINT, onSignal);
    }
    QSocketNotifier quitSignals(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(&quitSignals, &QSocketNotifier::activated, &qt, [&] {
        char byte;
        (void)!::read(signalPipe[0], &byte, 1);
        log.line("Asked to quit");
        QApplication::quit();
    });

    const char* homeEnv = std::getenv("HOME");
    const std::string home = homeEnv ? homeEnv : "/";
    QtDispatch dispatch;
    X11Screens screens(*main, log);
    X11Notifications notifications(*main, screens, log);
    // Tearing down against a dead server only risks a crash in some library
    // thread still talking to it; what the program keeps is already written.
    notifications.onConnectionLost = [] { std::_Exit(1); };
    DesktopEntries entries;
    X11Windows windows(std::move(background), screens, entries, dispatch, log, getpid(),
                       X11Workspace::identifier);
    XdgDefaults defaults(xdgConfigHome() + "/tarnwick", log);
    XdgLoginItems login(xdgConfigHome(), executable);
    X11Trust trust(*main, log);
    CanberraAudio audio(sounds, log);
    PosixFiles userFiles;
    PosixProcesses processes(log);
    SessionBus bus(log);
    X11Workspace workspace(windows, entries, bus, executable, home);
    LogSurfaces logSurfaces(log);
    quick::QuickSurfaces surfaces(
        logSurfaces,
        {.screen = [&](std::optional<uint32_t> display)
             -> std::optional<quick::QuickSurfaces::ScreenPixels> {
             // Monitors are in root pixels already, the primary first.
             auto pixels = [](const Rect& r) {
                 return QRect(int(r.x), int(r.y), int(r.w), int(r.h));
             };
             for (const auto& m : screens.monitors())
                 if (!display || m.id == *display)
                     return quick::QuickSurfaces::ScreenPixels{pixels(m.frame), pixels(m.usable)};
             return std::nullopt;
         },
         .preparePanel = [&](QWindow& w) { showOnEveryWorkspace(*main, uint32_t(w.winId())); },
         .usableAreas =
             [&] {
                 std::vector<QRect> areas;
                 for (const auto& m : screens.monitors())
                     areas.emplace_back(int(m.usable.x), int(m.usable.y), int(m.usable.w),
                                        int(m.usable.h));
                 return areas;
             },
         // The window manager answers at once; a window it never frames
         // opens as if it had no frame, and later ones do not wait again.
         .frameExtents =
             [&, noAnswer = false](QWindow& w) mutable {
                 const uint32_t id = uint32_t(w.winId());
                 QGuiApplication::sync(); // the window exists on the server
                 const auto e = frameExtents(*main, id, noAnswer ? 0 : 200);
                 noAnswer = !e;
                 return e ? QMargins(int((*e)[0]), int((*e)[2]), int((*e)[1]), int((*e)[3]))
                          : QMargins();
             },
         .compositing = [&] { return compositing(*main); },
         .controls = qEnvironmentVariableIsSet("TARNWICK_LOG_CONTROLS")
                         ? std::function<void(const std::string&)>(
                               [&](const std::string& text) { log.line(text); })
                         : nullptr,
         .words = [&] { return screens.builtinWords(); }});
    Platform ports{dispatch, screens, notifications, defaults,  login,     trust,   audio,
                   log,      windows, userFiles,     processes, workspace, surfaces};

    int status = 0;
    {
        App app(ports, args);
        surfaces.setIslandActions(
            {.move = [&](const auto& m, Selection which) { app.island().move(m, which); },
             .retarget = [&](const auto& m,
                             const tarnwick::Display& d) { app.island().retarget(m, d); },
             .close = [&](Closing how) { app.island().close(how); }});
        log.line(std::string("Tarnwick ") + TARNWICK_VERSION + " on " + (display ? display : ""));
        app.didFinishLaunching();
        bus.onAction([&](const std::string& name) {
            if (name == "save-layout")
                app.controller().saveLayout();
            else if (name == "restore-layout")
                app.controller().restoreLayout();
            else if (name == "choose-windows")
                app.controller().chooseWindows();
            else if (name == "settings")
                app.settingsWindow().show();
            else if (name == "quit")
                QApplication::quit();
            else
                return false;
            return true;
        });
        bus.claim([&] { app.shouldHandleReopen(false); }, [&] { QApplication::quit(); });
        quick::Tray tray(app.makeMenu());
        if (!QSystemTrayIcon::isSystemTrayAvailable())
            log.line("No system tray: the menu is reached through the desktop entry's actions");
        // The menu's commands also go to the log when they change (the status
        // lines are logged on their own), for whoever runs it without a tray.
        auto* menu = &tray.model();
        std::string menuText;
        auto logMenu = [&] {
            std::string text;
            for (const auto& e : menu->entries())
                if (e.visible &&
                    (e.kind == MenuEntry::Kind::button || e.kind == MenuEntry::Kind::picker))
                    text += (text.empty() ? "" : " | ") + e.text;
            if (text != menuText) log.line("menu: " + text);
            menuText = text;
        };
        logMenu();
        auto menuWatch = menu->observe(logMenu);
        status = QApplication::exec();
        leftEventLoop = true;
        // Background work refers to the core: it ends before the core does.
        dispatch.shutdown();
    }
    // Views let go of on the way out are deleted on a later turn of the event
    // loop, and there is none any more.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    log.line("Quit");
    return status;
}

} // namespace tarnwick::x11
