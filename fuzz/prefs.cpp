// Whatever another process, an older version or a hand edit left under the
// preference keys: values of every type (numbers out of every range, strings
// that look like numbers or booleans, arrays, objects, binary data), then a
// launch, a monitor connected, a move, a save, a restore and an unplug on the
// simulated desktop with virtual time passing. Nothing may crash, trip a
// sanitizer or keep the clock from moving.
#include "fuzz/Check.h"
#include "platform/sim/scenario/Scenario.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

using namespace tarnwick;
using tarnwick::fuzz::require;
using tarnwick::sim::Runtime;
using tarnwick::sim::SimDispatch;

namespace {

const char* const keys[] = {
    "onConnect",  "placement", "delay",    "targetDisplay",    "moveFullscreen", "rememberLayouts",
    "playSounds", "announce",  "excluded", "setup.askedLogin", "setup.skipMove", "layouts.v2",
};

// Values the readers give a meaning to, so that the fuzzer reaches past them.
const char* const words[] = {
    "ask",      "moveAll",  "nothing",
    "keepSize", "scale",    "fill",
    "YES",      "true",     "no",
    "Desk",     "Built-in", "com.example.notes",
    " 2.5x",    "-1",       "1e999",
    "-1e999",   "nan",      "inf",
    "0x10",     "",         "9223372036854775808",
    "1e-400",   "+-3",      "\t7",
};

// Each key's own kind of value, which the other keys' values must not crowd out.
DefaultsValue typical(const std::string& key, FuzzedDataProvider& in) {
    if (key == "onConnect") return in.PickValueInArray({"ask", "moveAll", "nothing"});
    if (key == "placement") return in.PickValueInArray({"keepSize", "scale", "fill"});
    if (key == "targetDisplay") return in.PickValueInArray({"Desk", "Built-in", ""});
    if (key == "excluded") return DefaultsValue::array({"com.example.mail"});
    if (key == "layouts.v2") {
        const std::string text =
            R"({"Built-in@1440x900 + Desk@2560x1440":[{"bundle":)"
            R"("com.example.notes","title":"","x":1e300,"y":-5,"w":0,"h":0}]})";
        return DefaultsValue::binary(std::vector<uint8_t>(text.begin(), text.end()));
    }
    return true;
}

double number(FuzzedDataProvider& in) {
    switch (in.ConsumeIntegralInRange(0, 9)) {
    case 0:
        return std::numeric_limits<double>::quiet_NaN();
    case 1:
        return std::numeric_limits<double>::infinity();
    case 2:
        return -std::numeric_limits<double>::infinity();
    case 3:
        return std::numeric_limits<double>::max();
    case 4:
        return -std::numeric_limits<double>::max();
    case 5:
        return std::numeric_limits<double>::denorm_min();
    case 6:
        return -0.0;
    case 7:
        return static_cast<double>(in.ConsumeIntegral<int32_t>()) / 8;
    default:
        return in.ConsumeFloatingPoint<double>();
    }
}

DefaultsValue value(FuzzedDataProvider& in, int depth) {
    switch (in.ConsumeIntegralInRange(0, depth > 3 ? 7 : 10)) {
    case 0:
        return nullptr;
    case 1:
        return in.ConsumeBool();
    case 2:
        return in.ConsumeIntegral<int64_t>();
    case 3:
        return in.ConsumeIntegral<uint64_t>();
    case 4:
        return number(in);
    case 5:
        return in.PickValueInArray(words);
    case 6:
        return in.ConsumeRandomLengthString(64);
    case 7: {
        auto bytes = in.ConsumeBytes<uint8_t>(in.ConsumeIntegralInRange<size_t>(0, 256));
        return DefaultsValue::binary(std::move(bytes));
    }
    case 8:
    case 9: {
        auto list = DefaultsValue::array();
        for (int n = in.ConsumeIntegralInRange(0, 4); n > 0; --n)
            list.push_back(value(in, depth + 1));
        return list;
    }
    default: {
        auto object = DefaultsValue::object();
        for (int n = in.ConsumeIntegralInRange(0, 3); n > 0; --n)
            object[in.ConsumeRandomLengthString(16)] = value(in, depth + 1);
        return object;
    }
    }
}

// A screen or window rectangle: mostly an ordinary one, now and then one no
// real desktop reports (no area, negative, beyond any integer, not a number),
// which the core must keep away from the frames it writes.
Rect rect(FuzzedDataProvider& in, Rect usual) {
    if (in.ConsumeIntegralInRange(0, 3) != 0) return usual;
    auto part = [&](double v) { return in.ConsumeBool() ? v : number(in); };
    return {part(usual.x), part(usual.y), part(usual.w), part(usual.h)};
}

// Lets `seconds` of virtual time pass; the program must let the clock move.
// False once the program has ended itself (a relaunch, a quit).
bool wait(Runtime& rt, double seconds) {
    const auto result =
        rt.dispatch.runUntil(rt.dispatch.nowMicros() + SimDispatch::micros(seconds));
    require(result != SimDispatch::Run::runaway,
            "the program schedules work at one instant forever");
    return result != SimDispatch::Run::stopped && !rt.dispatch.stopped();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    Runtime rt;
    auto& desk = rt.desktop;
    desk.addScreen({1, "Built-in", {0, 0, 1440, 900}, {0, 0, 1440, 875}, true});
    desk.addApp({10, "Notes", "com.example.notes"});
    desk.addApp({11, "Mail", "com.example.mail"});
    desk.addWindow({.pid = 10, .title = "Groceries", .frame = rect(in, {100, 125, 800, 600})},
                   false, false);
    desk.addWindow({.pid = 11, .title = "Inbox", .frame = {0, 25, 1440, 875}}, false, false);
    desk.addWindow({.pid = 11, .title = "Film", .frame = {0, 0, 1440, 900}, .fullscreen = true},
                   false, false);
    for (const char* key : keys) {
        switch (in.ConsumeIntegralInRange(0, 3)) {
        case 0:
            break;
        case 1:
            desk.storeUserDefault(key, typical(key, in));
            break;
        default:
            desk.storeUserDefault(key, value(in, 0));
        }
    }

    rt.launch({desk.world().bundlePath + "/Contents/MacOS/" + sim::SimWorld::ownName});
    if (!wait(rt, 1)) return 0;
    const sim::SimControl::Screen monitor{2, "Desk", rect(in, {1440, -540, 2560, 1440}),
                                          rect(in, {1440, -540, 2560, 1415})};
    desk.addScreen(monitor);
    desk.post(PlatformEvent::displaysChanged);
    if (!wait(rt, 5)) return 0;
    auto& controller = rt.app().controller();
    for (const auto& d : controller.displays())
        if (!d.isBuiltin) controller.moveAll(d);
    if (!wait(rt, 4)) return 0;
    controller.saveLayout();
    if (!wait(rt, 2)) return 0;
    controller.restoreLayout();
    if (!wait(rt, 2)) return 0;
    desk.unplug(monitor.id);
    desk.post(PlatformEvent::displaysChanged);
    // Past the periodic snapshot, with the monitor gone.
    wait(rt, 35);
    fuzz::requireTranscriptLines(rt.transcript.text());
    fuzz::requireDrawableFrames(rt.transcript.text());
    return 0;
}
