#include "layouts/Layouts.h"
#include "platform/sim/SimEngine.h"
#include "windows/WindowMover.h"

#include <benchmark/benchmark.h>

#include <memory>

using namespace tarnwick;
using namespace tarnwick::sim;

namespace {

// A desktop of `apps` applications with `perApp` windows each, on one screen.
// Nothing here is slow, so no call sleeps and all of it can run on the calling thread.
struct World : SimEngine {

    World(int apps, int perApp, bool privateFunctions = true) {
        dispatch.setMainMayBlock(true);
        desk.setPrivateFunctions(privateFunctions);
        SimDesktop::Screen screen;
        screen.id = 1;
        screen.name = "Studio Display";
        screen.frame = {0, 0, 2560, 1440};
        screen.visible = {0, 0, 2560, 1415};
        desk.addScreen(screen);
        for (int a = 0; a < apps; ++a) {
            SimDesktop::App app;
            app.pid = 1000 + a;
            app.name = "App " + std::to_string(a);
            app.bundle = "com.example.app" + std::to_string(a);
            desk.addApp(app);
            for (int i = 0; i < perApp; ++i) {
                SimDesktop::Window win;
                win.pid = app.pid;
                win.title = title(a, i);
                win.frame = frame(a + i);
                desk.addWindow(win, false, false);
            }
        }
    }
    static std::string title(int a, int i) {
        return "Quarterly report draft " + std::to_string(i) + " \u2014 App " + std::to_string(a);
    }
    static Rect frame(int k) { return {40.0 + k % 37 * 20, 60.0 + k % 23 * 15, 900, 640}; }
    std::string key() { return Displays::configKey(Displays::all(desk)); }
    void store(const LayoutStore& s) {
        const auto text = Layouts::encode(s).value();
        desk.storeUserDefault(Layouts::storeKey, nlohmann::json::binary(std::vector<uint8_t>(
                                                     text.begin(), text.end())));
    }
};

std::vector<SavedWindow> setupOf(int apps, int perApp, int shift) {
    std::vector<SavedWindow> out;
    for (int a = 0; a < apps; ++a)
        for (int i = 0; i < perApp; ++i) {
            auto f = World::frame(a + i + shift);
            out.push_back({"com.example.app" + std::to_string(a),
                           Layouts::titleDigest(World::title(a, i)), f.x, f.y, f.w, f.h});
        }
    return out;
}

// Defaults without the sim's transcript, to see what saving costs without the recording.
struct PlainDefaults : Defaults {
    std::map<std::string, DefaultsValue> values;
    void registerDefaults(const std::map<std::string, DefaultsValue>&) override {}
    std::optional<DefaultsValue> object(const std::string& key) override {
        auto it = values.find(key);
        return it == values.end() ? std::nullopt : std::optional(it->second);
    }
    void set(const std::string& key, const DefaultsValue& v) override { values[key] = v; }
    void remove(const std::string& key) override { values.erase(key); }
};

// Baselines: one title digest, and encoding one setup of 50 windows.
void BM_TitleDigest(benchmark::State& state) {
    const std::string title = World::title(7, 3);
    for (auto _ : state)
        benchmark::DoNotOptimize(Layouts::titleDigest(title));
}
BENCHMARK(BM_TitleDigest);

void BM_EncodeSetup50(benchmark::State& state) {
    const LayoutStore store{{"Studio Display:2560x1440", setupOf(10, 5, 0)}};
    for (auto _ : state)
        benchmark::DoNotOptimize(Layouts::encode(store));
}
BENCHMARK(BM_EncodeSetup50);

// 500 windows of 50 applications; arg 1 lists by the identifier scan, arg 0 by each application.
void BM_ListWindows(benchmark::State& state) {
    World w(50, 10, state.range(0) != 0);
    if (w.mover.windows().size() != 500) state.SkipWithError("expected 500 windows");
    for (auto _ : state)
        benchmark::DoNotOptimize(w.mover.windows());
}
BENCHMARK(BM_ListWindows)->ArgName("private")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

// N windows of 10 applications against a saved layout of N records, 30% of them renamed since.
void BM_Restore(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0)), perApp = n / 10;
    World w(10, perApp);
    w.store({{w.key(), setupOf(10, perApp, 5)}});
    for (int a = 0; a < 10; ++a)
        for (int i = 0; i < perApp; i += 10)
            for (int j = i; j < std::min(i + 3, perApp); ++j)
                w.desk.findWindow(1000 + a, World::title(a, j))->title += " (edited)";
    const auto windows = w.mover.windows();
    if (w.layouts.restore(windows).restored != n) state.SkipWithError("not every window placed");
    for (auto _ : state)
        benchmark::DoNotOptimize(w.layouts.restore(windows));
    state.SetComplexityN(n);
}
BENCHMARK(BM_Restore)
    ->Arg(50)
    ->Arg(100)
    ->Arg(200)
    ->Arg(500)
    ->Complexity()
    ->Unit(benchmark::kMicrosecond);

// Saving 50 windows into a store of 200 setups of 50 windows; arg 1 goes through the
// sim's defaults (which record the whole store in the transcript), arg 0 through plain ones.
void BM_Save(benchmark::State& state) {
    const bool sim = state.range(0) != 0;
    auto world = std::make_unique<World>(10, 5);
    LayoutStore store;
    for (int s = 0; s < 199; ++s)
        store["Display " + std::to_string(s) + ":1920x1080"] = setupOf(10, 5, s);
    store[world->key()] = setupOf(10, 5, 0);
    world->store(store);
    PlainDefaults plain; // used alone, so `world` is never replaced under it
    plain.values[Layouts::storeKey] = world->desk.userDefaults().at(Layouts::storeKey);
    Layouts plainLayouts(plain, world->desk, world->mover);
    for (auto _ : state) {
        if (sim) {
            world->layouts.save();
            if (world->transcript.text().size() > (64u << 20)) { // the transcript only grows
                state.PauseTiming();
                world = std::make_unique<World>(10, 5);
                world->store(store);
                state.ResumeTiming();
            }
        } else {
            plainLayouts.save();
        }
    }
}
BENCHMARK(BM_Save)->ArgName("simDefaults")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

} // namespace
