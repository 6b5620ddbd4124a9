#include "platform/ax/AXWindows.h"

#include "platform/sim/SimEngine.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using namespace tarnwick::ax;
using tarnwick::sim::SimDesktop;
using tarnwick::sim::SimDispatch;
using Window = SimDesktop::Window;

namespace {

// The simulated desktop's accessibility interface, through the adapter the
// program sees it by.
struct World : tarnwick::sim::SimEngine {
    AXWindows port{desk, dispatch};

    void app(int32_t pid, const std::string& name, std::optional<std::string> bundle,
             AppKind policy = AppKind::regular, bool slow = false) {
        desk.addApp({pid, name, std::move(bundle), policy, slow});
    }
    void window(const Window& w) { desk.addWindow(w, false, false); }
    template <typename F> int64_t blocking(F&& fn) {
        const auto took = offMain(std::forward<F>(fn));
        EXPECT_TRUE(took) << "still blocked after 600 s";
        return took.value_or(-1);
    }
    std::vector<AppWindow> windows() {
        std::vector<AppWindow> list;
        blocking([&] { list = port.list(movable); });
        return list;
    }
    static bool movable(const RunningApp& app) {
        return app.kind == AppKind::regular && app.identifier;
    }
};

std::vector<std::string> described(const std::vector<AppWindow>& list) {
    std::vector<std::string> out;
    for (const auto& w : list)
        out.push_back(std::to_string(w.app->pid) + " " + w.title + (w.fullscreen ? " fs" : ""));
    return out;
}

// Passes everything through, but one attribute of every window fails to read
// or reads as another type, as a half-answering application does.
class HalfAnswering : public AXApi {
  public:
    HalfAnswering(SimDesktop& inner, std::string attribute, bool mistype)
        : in_(inner)
        , attribute_(std::move(attribute))
        , mistype_(mistype) {}
    std::vector<AppRef> runningApplications() override { return in_.runningApplications(); }
    std::optional<std::string> ownBundleIdentifier() override { return in_.ownBundleIdentifier(); }
    std::optional<std::vector<WindowListEntry>> windowList() override {
        ++windowLists;
        return in_.windowList();
    }
    AXElement createApplication(int32_t pid) override { return in_.createApplication(pid); }
    AXError setMessagingTimeout(const AXElement& e, double s) override {
        return in_.setMessagingTimeout(e, s);
    }
    AXError copyAttribute(const AXElement& e, const std::string& name, AXAttribute& v) override {
        auto result = in_.copyAttribute(e, name, v);
        if (name != attribute_) return result;
        if (!mistype_) return axNoValue;
        if (auto* value = std::get_if<AXValue>(&v))
            value->type =
                value->type == AXValueType::point ? AXValueType::size : AXValueType::point;
        else if (std::holds_alternative<bool>(v))
            v = std::string("1");
        else
            v = true;
        return result;
    }
    AXError setAttribute(const AXElement& e, const std::string& n, const AXAttribute& v) override {
        return in_.setAttribute(e, n, v);
    }
    bool lookupCreateWithRemoteToken() override { return in_.lookupCreateWithRemoteToken(); }
    bool lookupGetWindow() override { return in_.lookupGetWindow(); }
    AXElement createWithRemoteToken(const RemoteToken& t) override {
        return in_.createWithRemoteToken(t);
    }
    AXError getWindow(const AXElement& e, uint32_t& n) override { return in_.getWindow(e, n); }

    int windowLists = 0;

  private:
    SimDesktop& in_;
    std::string attribute_;
    bool mistype_;
};

// Every write of a window as the interface sees it, in order.
class Recording : public HalfAnswering {
  public:
    explicit Recording(SimDesktop& inner)
        : HalfAnswering(inner, "", false) {}
    AXError setAttribute(const AXElement& e, const std::string& n, const AXAttribute& v) override {
        std::string text = n;
        if (auto* a = std::get_if<AXValue>(&v))
            text += " " + std::to_string(int(a->a)) + "," + std::to_string(int(a->b));
        else if (auto* b = std::get_if<bool>(&v))
            text += *b ? " on" : " off";
        writes.push_back(text);
        return HalfAnswering::setAttribute(e, n, v);
    }
    std::vector<std::string> writes;
};

} // namespace

// Size first so that the position fits on the new display, and again after
// it because an application may clamp the size to its old display; one
// line in the transcript per frame. A window of another platform, or one
// gone since it was listed, is left alone.
TEST(AXWindows, AFrameIsWrittenAsSizePositionSize) {
    World w;
    w.app(10, "Notes", "com.example.notes");
    w.window({.pid = 10, .title = "Doc", .frame = {0, 25, 800, 600}});
    Recording access(w.desk);
    AXWindows port(access, w.dispatch);
    std::vector<AppWindow> list;
    w.blocking([&] {
        list = port.list(World::movable);
        port.placeAll({{list.at(0).ref, {100, 125, 640, 480}},
                       {std::make_shared<WindowHandle>(), {0, 0, 10, 10}}});
        port.setMaximized(list.at(0).ref, true);
    });
    EXPECT_EQ(access.writes, (std::vector<std::string>{"AXSize 640,480", "AXPosition 100,125",
                                                       "AXSize 640,480", "AXMaximized on"}));
    EXPECT_EQ(w.transcript.text(), "0.000 frame 10 \"Doc\" 100,125,640,480\n");
    std::optional<Rect> now;
    w.blocking([&] { now = port.frame(list.at(0).ref); });
    EXPECT_EQ(now, (Rect{100, 125, 640, 480}));
    w.desk.quitApp(10);
    w.blocking([&] { now = port.frame(list.at(0).ref); });
    EXPECT_EQ(now, std::nullopt);
}

TEST(AXWindows, RemoteToken) {
    const RemoteToken want{0xF5, 0x01, 0, 0, 0, 0, 0, 0, 0x6F, 0x63,
                           0x6F, 0x63, 7, 0, 0, 0, 0, 0, 0,    0};
    EXPECT_EQ(AXWindows::remoteToken(501, 7), want);
    auto t = AXWindows::remoteToken(-2, 0x0102030405060708);
    EXPECT_EQ(std::vector<uint8_t>(t.begin(), t.begin() + 8),
              (std::vector<uint8_t>{0xFE, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
    EXPECT_EQ(std::vector<uint8_t>(t.begin() + 12, t.end()),
              (std::vector<uint8_t>{8, 7, 6, 5, 4, 3, 2, 1}));
}

TEST(AXWindows, UnreadableAttributes) {
    struct Case {
        std::string attribute;
        bool mistype;
        std::vector<std::string> want;
    };
    const std::vector<Case> cases{
        {"", false, {"10 Plain fs"}},
        {"AXTitle", true, {"10  fs"}},
        {"AXFullScreen", false, {"10 Plain"}},
        {"AXFullScreen", true, {"10 Plain"}},
        {"AXMinimized", false, {"10 Plain fs", "10 Min"}},
        {"AXSubrole", true, {}},
        {"AXPosition", true, {}},
        {"AXSize", false, {}},
    };
    for (const auto& c : cases) {
        World w;
        w.app(10, "Notes", "com.example.notes");
        w.window({.pid = 10, .title = "Plain", .frame = {0, 25, 800, 600}, .fullscreen = true});
        w.window({.pid = 10, .title = "Min", .frame = {0, 25, 800, 600}, .minimized = true});
        HalfAnswering access(w.desk, c.attribute, c.mistype);
        AXWindows port(access, w.dispatch);
        std::vector<AppWindow> list;
        w.blocking([&] { list = port.list(World::movable); });
        EXPECT_EQ(described(list), c.want) << c.attribute << " mistyped " << c.mistype;
    }
}

// A platform without the scan may have no window server's list worth asking for.
TEST(AXWindows, AsksForTheWindowServersListOnlyToScan) {
    for (bool privateFunctions : {true, false}) {
        World w;
        w.desk.setPrivateFunctions(privateFunctions);
        w.app(10, "Notes", "com.example.notes");
        w.window({.pid = 10, .title = "Doc", .frame = {0, 25, 800, 600}});
        HalfAnswering access(w.desk, "", false);
        AXWindows port(access, w.dispatch);
        std::vector<AppWindow> list;
        w.blocking([&] { list = port.list(World::movable); });
        EXPECT_EQ(described(list), std::vector<std::string>{"10 Doc"}) << privateFunctions;
        EXPECT_EQ(access.windowLists, privateFunctions ? 1 : 0);
    }
}

TEST(AXWindows, ASlowApplicationCostsHalfASecondPerRead) {
    for (bool privateFunctions : {true, false}) {
        World w;
        w.desk.setPrivateFunctions(privateFunctions);
        w.app(10, "Busy", "com.example.busy", AppKind::regular, true);
        w.window({.pid = 10, .title = "One", .frame = {0, 25, 800, 600}});
        w.window({.pid = 10, .title = "Two", .frame = {0, 25, 800, 600}});
        w.app(11, "Notes", "com.example.notes");
        w.window({.pid = 11, .title = "Doc", .frame = {0, 25, 800, 600}});
        std::vector<AppWindow> list;
        auto took = w.blocking([&] { list = w.port.list(World::movable); });
        EXPECT_EQ(described(list), std::vector<std::string>{"11 Doc"});
        // Scanning finds both elements and each fails its first read; without
        // the scan only the application's window list is asked for, once.
        EXPECT_EQ(took, SimDispatch::micros(privateFunctions ? 1.0 : 0.5));
    }
}

TEST(AXWindows, SetFullscreenPollsUntilTheStateIsReached) {
    World w;
    w.app(10, "Player", "com.example.player");
    const Rect f{0, 25, 800, 600};
    w.window({.pid = 10, .title = "Quick", .frame = f, .fullscreen = true, .leave = 0});
    w.window({.pid = 10, .title = "Later", .frame = f, .fullscreen = true, .leave = 0.35});
    w.window({.pid = 10, .title = "Stuck", .frame = f, .fullscreen = true, .leave = std::nullopt});
    const auto list = w.windows();
    ASSERT_EQ(list.size(), 3u);

    struct Case {
        size_t index;
        bool want;
        double seconds;
    };
    // Found at the first poll: 0.1 s, then 0.9 s for the animation. At the
    // fourth: 0.4 + 0.9. Never: 50 polls of 0.1 s and nothing more.
    for (auto c : std::vector<Case>{{0, true, 1.0}, {1, true, 1.3}, {2, false, 5.0}}) {
        bool got = !c.want;
        auto took = w.blocking([&] { got = w.port.setFullscreen(list[c.index].ref, false); });
        EXPECT_EQ(got, c.want) << list[c.index].title;
        EXPECT_EQ(took, SimDispatch::micros(c.seconds)) << list[c.index].title;
    }
}
