// What opening the island costs the program's views: the panel made over a
// chooser of 20 windows, drawn once and let go, again and again, on Qt's
// offscreen platform. Prints the first opening's time, the median's, and
// the process's resident memory after all of them:
//   tarnwick-bench-views [OPENINGS]
#include "platform/quick/QuickSurfaces.h"
#include "platform/quick/QuickView.h"
#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimSurfaces.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace tarnwick;

namespace {

long residentKb() {
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly)) return -1;
    for (const auto& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').front().toLong();
    return -1;
}

std::shared_ptr<IslandModel> chooser() {
    const std::vector<tarnwick::Display> displays{
        {1, "Built-in Display", {0, 0, 1512, 982}, {0, 25, 1512, 949}, true},
        {2, "Studio Display", {1512, 0, 2560, 1440}, {1512, 0, 2560, 1415}, false},
    };
    auto model = std::make_shared<IslandModel>(IslandModel::Seed{.target = displays[1]}, displays);
    std::vector<AppWindow> windows;
    auto app = std::make_shared<RunningApp>(RunningApp{1000, "com.example.app", "App", {}, {}});
    for (int i = 0; i < 20; ++i)
        windows.push_back({app, nullptr, {40, 60, 800, 600}, "Window " + std::to_string(i), false});
    model->setWindows(windows);
    model->rebuild();
    return model;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QSG_RENDER_LOOP", "basic");
    QApplication qapp(argc, argv);
    const int openings = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20;

    sim::SimDispatch dispatch;
    sim::Transcript transcript{dispatch};
    sim::SimDesktop desk{dispatch, transcript};
    desk.addScreen({1, "Built-in Display", {0, 0, 1512, 982}, {0, 25, 1512, 949}});
    quick::QuickSurfaces surfaces{desk.surfaces(), {}};

    std::vector<double> took;
    for (int i = 0; i < openings; ++i) {
        QElapsedTimer timer;
        timer.start();
        {
            auto panel = surfaces.makePanel(PanelPlacement{.size = {600, 400}}, chooser());
            panel->show();
            if (auto* window = surfaces.panelWindow())
                static_cast<QQuickWindow*>(window)->grabWindow();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        took.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    const double first = took.front();
    std::sort(took.begin(), took.end());
    std::printf("openings %d: first %.1f ms, median %.1f ms, resident %ld kB\n", openings, first,
                took[took.size() / 2], residentKb());
    dispatch.shutdown();
    return 0;
}
