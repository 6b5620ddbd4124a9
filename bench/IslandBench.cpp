#include "island/IslandModel.h"
#include "island/IslandView.h"
#include "platform/sim/SimScreens.h"

#include <benchmark/benchmark.h>

using namespace tarnwick;

namespace {

const std::vector<Display> displays{
    {1, "Built-in Retina Display", {0, 0, 1512, 982}, {0, 25, 1512, 949}, true},
    {2, "Studio Display", {1512, -458, 2560, 1440}, {1512, -458, 2560, 1415}, false},
    {3, "Side Display", {-1920, 0, 1920, 1080}, {-1920, 0, 1920, 1080}, false},
};

// `n` windows spread over the three displays, each app owning ten of them.
std::vector<AppWindow> windows(int n) {
    std::vector<AppWindow> out;
    std::vector<AppRef> apps;
    for (int i = 0; i < n; ++i) {
        if (i % 10 == 0)
            apps.push_back(std::make_shared<RunningApp>(RunningApp{
                1000 + i / 10, "com.example.app" + std::to_string(i / 10), "App", {}, {}}));
        const auto& d = displays[static_cast<size_t>(i % 3)];
        out.push_back({apps.back(),
                       nullptr,
                       {d.frame.x + 40, d.frame.y + 60, 800, 600},
                       "Window " + std::to_string(i),
                       false});
    }
    return out;
}

double metric(const std::string& text, double size, FontWeight) {
    return 0.6 * size * static_cast<double>(text.size());
}

// What a change of destination costs: the list rebuilt with its default ticks.
void BM_IslandRebuild(benchmark::State& state) {
    IslandModel m({.target = displays[1]}, displays);
    m.setWindows(windows(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        m.rebuild();
        benchmark::DoNotOptimize(m.items().data());
    }
}
BENCHMARK(BM_IslandRebuild)->ArgName("windows")->Arg(50)->Arg(500);

// Everything the chooser shows, decided once: what a redraw asks of the view model.
void BM_ChooserView(benchmark::State& state) {
    IslandModel m({.target = displays[1], .phase = IslandModel::Choosing{}}, displays);
    m.setWindows(windows(static_cast<int>(state.range(0))));
    m.rebuild();
    m.setExpanded(true);
    IslandView view(m, metric, sim::SimScreens::words);
    for (auto _ : state)
        benchmark::DoNotOptimize(view.texts());
}
BENCHMARK(BM_ChooserView)->ArgName("windows")->Arg(50)->Arg(500);

} // namespace
