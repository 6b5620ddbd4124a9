// tarnwick-displaycycles: the x11 platform's side of a display change, many
// times over, for a leak check (built with AddressSanitizer, LeakSanitizer
// reports at exit whatever the cycles left unreachable).
//
//   tarnwick-displaycycles OUTPUT MODE CYCLES
//
// Builds the screens and the event pump over $DISPLAY as the program does,
// then plugs OUTPUT (right of DUMMY0, MODE already added) and unplugs it
// CYCLES times with xrandr. After each change it waits for the screen change
// to be reported and reads what the core reads on one (the screens, the
// built-in flags, the pointer, the main screen). Exit 1 when a change is not
// reported within 5 s or the screens do not follow.
#include "platform/linux/StderrLog.h"
#include "platform/x11/X11Notifications.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/XConnection.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <cstdlib>
#include <string>

using namespace tarnwick;
using namespace tarnwick::x11;

namespace {

// Runs the event loop until `done` or 5 s have passed.
bool waitFor(const std::function<bool()>& done) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > 5000) return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: tarnwick-displaycycles OUTPUT MODE CYCLES\n");
        return 2;
    }
    const std::string output = argv[1], mode = argv[2];
    const int cycles = std::atoi(argv[3]);
    QCoreApplication app(argc, argv);

    xdg::StderrLog log;
    std::string error;
    auto x = XConnection::open(nullptr, error);
    if (!x) {
        std::fprintf(stderr, "tarnwick-displaycycles: %s\n", error.c_str());
        return 1;
    }
    X11Screens screens(*x, log);
    X11Notifications notifications(*x, screens, log);
    notifications.onConnectionLost = [] { std::exit(1); };
    size_t count = screens.screens().size();
    notifications.observe(PlatformEvent::displaysChanged, [&] {
        const auto list = screens.screens();
        count = list.size();
        for (const auto& s : list)
            if (s.number) (void)screens.isBuiltin(*s.number);
        (void)screens.activeDisplayList();
        (void)screens.mouseLocation();
        (void)screens.mainScreen();
        (void)screens.origin();
    });

    const size_t alone = count;
    const std::string on = "xrandr --output " + output + " --mode " + mode + " --right-of DUMMY0";
    const std::string off = "xrandr --output " + output + " --off";
    for (int i = 0; i < cycles; ++i) {
        if (std::system(on.c_str()) != 0) return 1;
        if (!waitFor([&] { return count == alone + 1; })) {
            std::fprintf(stderr, "cycle %d: %s was not reported (%zu screens)\n", i, output.c_str(),
                         count);
            return 1;
        }
        if (std::system(off.c_str()) != 0) return 1;
        if (!waitFor([&] { return count == alone; })) {
            std::fprintf(stderr, "cycle %d: %s stayed (%zu screens)\n", i, output.c_str(), count);
            return 1;
        }
    }
    // The follow-up reads after the last change, before everything goes.
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 600)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    std::printf("%d cycles\n", cycles);
    return 0;
}
