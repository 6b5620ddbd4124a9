#include "settings/SettingsView.h"
#include "settings/SettingsWindow.h"

#include "tests/app/ShellWorld.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace tarnwick;
using tarnwick::shelltest::ShellWorld;

namespace {

struct SettingsWorld : ShellWorld {
    SettingsWindow& window() { return app->settingsWindow(); }
    SettingsView& view() {
        window().show();
        return *window().view();
    }
    std::vector<FormItem> items() {
        std::vector<FormItem> out;
        for (const auto& s : view().form())
            out.insert(out.end(), s.items.begin(), s.items.end());
        return out;
    }
    std::optional<FormItem> find(const std::string& text) {
        for (const auto& i : items())
            if (i.text == text) return i;
        return std::nullopt;
    }
    FormItem item(const std::string& text) {
        auto i = find(text);
        if (!i) ADD_FAILURE() << "no item " << text;
        return i.value_or(FormItem{});
    }
    FormItem appRow(const std::string& bundle) {
        for (const auto& i : items())
            if (i.kind == FormItem::Kind::app && i.bundle == bundle) return i;
        ADD_FAILURE() << "no app " << bundle;
        return {};
    }
    sim::SimWindow& simWindow() { return *desk.surfaces().window(WindowKind::settings); }
};

// The desktop's workspace, counting how often the running applications are
// listed: on a real desktop each listing reads every window there is.
struct CountingWorkspace : Workspace {
    explicit CountingWorkspace(Workspace& inner)
        : w(inner) {}
    std::vector<AppRef> runningApplications() override {
        ++listings;
        return w.runningApplications();
    }
    std::optional<std::string> applicationLocation(const std::string& id) override {
        return w.applicationLocation(id);
    }
    std::string icon(const std::string& path) override { return w.icon(path); }
    std::string programPath() override { return w.programPath(); }
    bool installed() override { return w.installed(); }
    std::optional<std::string> programIdentifier() override { return w.programIdentifier(); }
    std::optional<std::string> version() override { return w.version(); }
    std::optional<std::string> translocationOriginal(const std::string& path) override {
        return w.translocationOriginal(path);
    }
    std::optional<std::string> approvalSettingsURL() override { return w.approvalSettingsURL(); }
    std::optional<std::string> installGuide() override { return w.installGuide(); }

    Workspace& w;
    int listings = 0;
};

struct CountingWorld : SettingsWorld {
    CountingWorkspace counting{desk.workspace()};
    Platform counted{platform.dispatch, platform.screens, platform.notifications, platform.defaults,
                     platform.login,    platform.trust,   platform.audio,         platform.log,
                     platform.windows,  platform.files,   platform.processes,     counting,
                     platform.surfaces};

    void launchCounted() {
        app = std::make_unique<App>(counted, std::vector<std::string>{program});
        app->didFinishLaunching();
    }
    // What a drawn window does on every change it is told of.
    Subscription render() {
        return view().observe([this] { (void)window().view()->form(); });
    }
};

} // namespace

TEST(SettingsForm, OneDisplayOffersNoChoosingAndNoLayouts) {
    SettingsWorld w;
    w.launch();
    EXPECT_TRUE(w.find("Connect a second display to move windows between screens."));
    EXPECT_FALSE(w.find("Choose which windows to move\u2026"));
    auto save = w.item("Save layout now");
    EXPECT_FALSE(save.enabled);
    EXPECT_FALSE(w.item("Restore layout").enabled);
    w.view().press(save);
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), "Ready");

    w.plugStudio();
    EXPECT_FALSE(w.find("Connect a second display to move windows between screens."));
    EXPECT_TRUE(w.find("Choose which windows to move\u2026"));
    EXPECT_TRUE(w.item("Save layout now").enabled);
    w.view().press(w.item("Save layout now"));
    w.wait(1);
    EXPECT_EQ(w.app->status().text(), "Layout saved for 2 displays");
    EXPECT_TRUE(w.find("Layout saved for 2 displays")); // the status line follows
}

TEST(SettingsForm, MoveButtonsTellTheLaptopFromAMonitor) {
    SettingsWorld w;
    w.launch();
    w.plugStudio();
    auto laptop = w.item("Move everything to Built-in Display");
    EXPECT_EQ(laptop.detail, "1512 \u00d7 982 \u00b7 built-in");
    EXPECT_EQ(laptop.symbol, "laptopcomputer");
    EXPECT_EQ(laptop.tint, Tint::gray);
    auto studio = w.item("Move everything to Studio Display");
    EXPECT_EQ(studio.detail, "2560 \u00d7 1440 \u00b7 external");
    EXPECT_EQ(studio.symbol, "display");
    EXPECT_EQ(studio.tint, Tint::accent);
    EXPECT_EQ(SettingsView::caption({.frame = {0, 0, 1710.9, -1112.5}}),
              "1710 \u00d7 1112 \u00b7 external");
}

TEST(SettingsForm, AStoredTargetStaysListedWhileUnplugged) {
    SettingsWorld w;
    w.desk.storeUserDefault("targetDisplay", "Old Monitor");
    w.launch();
    w.plugStudio();
    auto target = w.item("Target display");
    EXPECT_EQ(target.choices, (std::vector<std::string>{"Largest external display",
                                                        "Studio Display", "Old Monitor"}));
    EXPECT_EQ(target.chosen, 2u);

    w.view().choose(target, 1);
    EXPECT_EQ(w.desk.userDefaults().at("targetDisplay"), "Studio Display");
    target = w.item("Target display");
    EXPECT_EQ(target.choices.size(), 2u); // no longer kept apart
    EXPECT_EQ(target.chosen, 1u);
    w.view().choose(target, 0);
    EXPECT_EQ(w.desk.userDefaults().at("targetDisplay"), "");
}

TEST(SettingsForm, AppTogglesEditTheExcludedList) {
    SettingsWorld w;
    w.desk.addApp({10, "Safari", "com.apple.Safari"});
    w.desk.storeUserDefault("excluded",
                            nlohmann::json{"com.gone.Thing", "com.apple.mail", "com.gone.Thing"});
    w.launch();
    auto gone = w.appRow("com.gone.Thing");
    EXPECT_FALSE(gone.on);
    EXPECT_EQ(gone.text, "com.gone.Thing");
    EXPECT_TRUE(w.appRow("com.apple.Safari").on);

    w.view().toggle(gone, true); // both occurrences go
    EXPECT_EQ(w.desk.userDefaults().at("excluded"), nlohmann::json{"com.apple.mail"});
    EXPECT_FALSE(w.find("com.gone.Thing"));

    auto safari = w.appRow("com.apple.Safari");
    w.view().toggle(safari, false);
    w.view().toggle(safari, false); // already there: not added twice
    EXPECT_EQ(w.desk.userDefaults().at("excluded"),
              (nlohmann::json{"com.apple.mail", "com.apple.Safari"}));
    EXPECT_FALSE(w.appRow("com.apple.Safari").on);
}

TEST(SettingsForm, SettleDelayStaysOnTheSliderSteps) {
    EXPECT_EQ(SettingsView::snapDelay(0.1), 0.5);
    EXPECT_EQ(SettingsView::snapDelay(7), 6.0);
    EXPECT_EQ(SettingsView::snapDelay(2.3), 2.5);
    EXPECT_EQ(SettingsView::snapDelay(2.2), 2.0);
    EXPECT_EQ(SettingsView::snapDelay(NAN), 0.5);
    EXPECT_EQ(SettingsView::snapDelay(-INFINITY), 0.5);
    EXPECT_EQ(SettingsView::delayText(2.0), "2.0 s");
    EXPECT_EQ(SettingsView::delayText(5.5), "5.5 s");

    SettingsWorld w;
    w.desk.storeUserDefault("delay", 10);
    w.launch();
    auto slider = w.item("Wait for display to settle");
    EXPECT_EQ(slider.value, 6.0); // the knob cannot leave the track
    EXPECT_EQ(slider.detail, "10.0 s");
    w.view().slide(0.2);
    EXPECT_EQ(w.desk.userDefaults().at("delay"), 0.5);
}

TEST(SettingsForm, PermissionRowTurnsGreenWithinATick) {
    SettingsWorld w;
    w.launch();
    w.desk.setTrusted(false);
    auto& view = w.view();
    EXPECT_FALSE(view.trusted());
    EXPECT_EQ(w.item("Accessibility access needed").tint, Tint::orange);
    w.view().press(w.item("Fix this"));
    EXPECT_TRUE(w.app->setupWindow().visible());

    int told = 0;
    auto sub = view.observe([&] { ++told; });
    w.wait(1);
    w.desk.setTrusted(true);
    w.wait(0.9);
    EXPECT_FALSE(view.trusted());
    w.wait(0.1);
    EXPECT_TRUE(view.trusted());
    EXPECT_EQ(told, 1);
    EXPECT_EQ(w.item("Accessibility access granted").symbol, "checkmark.circle.fill");
    EXPECT_FALSE(w.find("Fix this"));
    w.wait(10); // no news is not told
    EXPECT_EQ(told, 1);
}

TEST(SettingsWindow, CentresOnTheScreenUnderThePointerOnlyWhenItAppears) {
    SettingsWorld w;
    w.launch();
    w.plugStudio();
    w.desk.setMouse({2000, 700});
    w.window().show();
    auto& win = w.simWindow();
    // The studio's usable area is 1512,0 2560x1415; the window 560x780.
    EXPECT_EQ(win.origin(), (Point{1512 + 1000, 317.5}));

    w.desk.setMouse({100, 100});
    w.window().show();
    EXPECT_EQ(win.origin(), (Point{2512, 317.5})); // on screen: left where it is
    EXPECT_EQ(&w.simWindow(), &win);

    win.closeBox();
    w.desk.setMouse({-5000, -5000}); // on no screen: the main one
    w.window().show();
    EXPECT_TRUE(win.visible());
    EXPECT_EQ(win.origin(), (Point{476, 88.5}));

    win.closeBox();
    w.desk.unplug(1);
    w.desk.unplug(2);
    w.window().show(); // nowhere to centre it: it stays, and still comes forward
    EXPECT_TRUE(win.visible());
    EXPECT_EQ(win.origin(), (Point{476, 88.5}));
}

TEST(SettingsForm, TheAppListIsReadOnTheTickNotOnEveryChange) {
    CountingWorld w;
    w.launchCounted();
    auto drawn = w.render();
    w.counting.listings = 0;
    // A move of many windows: a status line each, 200 of them in 10 s.
    for (int i = 1; i <= 200; ++i) {
        w.app->status().set("Moving " + std::to_string(i) + " of 200");
        w.wait(0.05);
    }
    EXPECT_LE(w.counting.listings, 6) << "at most one listing per tick";
    EXPECT_GE(w.counting.listings, 4) << "the list is still kept up to date";

    // An application started since shows within a tick, and is told once.
    w.desk.addApp({10, "Safari", "com.apple.Safari"});
    int told = 0;
    auto sub = w.view().observe([&] { ++told; });
    w.wait(2);
    EXPECT_TRUE(w.find("Safari"));
    EXPECT_EQ(told, 1);
    w.wait(10); // no news is not told
    EXPECT_EQ(told, 1);
}

TEST(SettingsWindow, NothingIsReadWhileTheWindowIsHidden) {
    CountingWorld w;
    w.launchCounted();
    auto& view = w.view();
    w.simWindow().closeBox();
    w.wait(2.5); // the tick that finds the window hidden
    w.counting.listings = 0;
    w.desk.setTrusted(false);
    w.desk.addApp({10, "Safari", "com.apple.Safari"});
    w.wait(60);
    EXPECT_EQ(w.counting.listings, 0);
    EXPECT_TRUE(view.trusted()) << "the approval was read while hidden";

    // Shown again: read at once, and then on every tick again.
    w.window().show();
    EXPECT_FALSE(view.trusted());
    EXPECT_TRUE(w.find("Safari"));
    EXPECT_EQ(w.counting.listings, 1);
    w.desk.setTrusted(true);
    w.wait(2);
    EXPECT_TRUE(view.trusted());
}
