#include "prefs/Prefs.h"

#include "platform/sim/SimDesktop.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

using namespace tarnwick;
using tarnwick::sim::SimDesktop;
using tarnwick::sim::SimDispatch;
using tarnwick::sim::Transcript;

namespace {

struct World {
    SimDispatch dispatch;
    Transcript transcript{dispatch};
    SimDesktop desk{dispatch, transcript};
    Prefs open() { return Prefs(desk, desk, desk); }
};

} // namespace

TEST(Prefs, FreshDatabaseGivesTheDefaultsAndWritesNothing) {
    World w;
    auto p = w.open();
    EXPECT_EQ(p.onConnect(), OnConnect::ask);
    EXPECT_EQ(p.placement(), Placement::keepSize);
    EXPECT_EQ(p.delay(), 2.0);
    EXPECT_EQ(p.targetDisplay(), "");
    EXPECT_TRUE(p.moveFullscreen() && p.rememberLayouts() && p.playSounds() && p.announce());
    EXPECT_TRUE(p.excluded().empty());
    EXPECT_FALSE(p.launchAtLogin());
    EXPECT_TRUE(w.desk.userDefaults().empty());
    EXPECT_EQ(w.transcript.text(), "");
}

TEST(Prefs, StoredValuesAreReadLenientlyAndNeverWrittenBack) {
    struct Case {
        DefaultsValue onConnect, placement, excluded;
        OnConnect wantOnConnect;
        Placement wantPlacement;
        std::vector<std::string> wantExcluded;
    };
    const std::vector<Case> cases{
        {"moveAll", "fill", {"a", "b"}, OnConnect::moveAll, Placement::fill, {"a", "b"}},
        {"nothing", "scale", {}, OnConnect::nothing, Placement::scale, {}},
        {"MoveAll", "Fill", "com.example.one", OnConnect::ask, Placement::keepSize, {}},
        {"", "", {"a", 2}, OnConnect::ask, Placement::keepSize, {}},
        {"sometimes", "stretch", {{"a", "b"}}, OnConnect::ask, Placement::keepSize, {}},
        {1, true, 3, OnConnect::ask, Placement::keepSize, {}},
    };
    for (const auto& c : cases) {
        World w;
        w.desk.storeUserDefault("onConnect", c.onConnect);
        w.desk.storeUserDefault("placement", c.placement);
        w.desk.storeUserDefault("excluded", c.excluded);
        auto p = w.open();
        const auto what = c.onConnect.dump() + " " + c.placement.dump() + " " + c.excluded.dump();
        EXPECT_EQ(p.onConnect(), c.wantOnConnect) << what;
        EXPECT_EQ(p.placement(), c.wantPlacement) << what;
        EXPECT_EQ(p.excluded(), c.wantExcluded) << what;
        EXPECT_EQ(w.transcript.text(), "") << what;
    }
    World w;
    w.desk.storeUserDefault("delay", 10);
    EXPECT_EQ(w.open().delay(), 10.0); // beyond what the settings offer, used as it is
}

TEST(Prefs, AStoredDelayIsKeptAsItIsButWaitedOnlyWithinBounds) {
    const double inf = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<DefaultsValue, double>> cases{
        {0.5, 0.5},
        {6.0, 6.0},
        {10, 10},
        {60, 60},
        {60.5, 60},
        {1e300, 60},
        {9223372036855LL, 60},
        {-3, 0},
        {"nan", 2.0},
        {"inf", 60},
        {"-inf", 0},
        {"x", 0},
        {true, 1},
        {DefaultsValue::array(), 0},
    };
    for (const auto& [stored, wait] : cases) {
        World w;
        w.desk.storeUserDefault("delay", stored);
        auto p = w.open();
        EXPECT_EQ(p.settleTime(), wait) << stored.dump();
        if (stored.is_number()) {
            EXPECT_EQ(p.delay(), stored.get<double>()) << stored.dump();
        }
    }
    World w;
    auto p = w.open();
    p.setDelay(std::nan(""));
    EXPECT_EQ(p.settleTime(), Prefs::defaultDelay);
    p.setDelay(inf);
    EXPECT_EQ(p.settleTime(), Prefs::maxSettleTime);
}

TEST(Prefs, EveryChangeIsWrittenThroughAndReadBackNextLaunch) {
    World w;
    {
        auto p = w.open();
        std::vector<Placement> seen;
        auto sub = p.observe([&] { seen.push_back(p.placement()); });
        p.setPlacement(Placement::fill);
        EXPECT_EQ(seen, std::vector<Placement>{Placement::fill}); // told after the change
        sub.reset();
        p.setPlacement(Placement::fill);
        EXPECT_EQ(seen.size(), 1u); // an ended subscription hears nothing more
        p.setOnConnect(OnConnect::nothing);
        p.setDelay(10);
        p.setTargetDisplay("Desk");
        p.setMoveFullscreen(false);
        p.setExcluded({"com.example.b", "com.example.a"});
    }
    const auto& stored = w.desk.userDefaults();
    EXPECT_EQ(stored.at("placement"), "fill");
    EXPECT_EQ(stored.at("onConnect"), "nothing");
    EXPECT_EQ(stored.at("delay"), 10.0);
    EXPECT_EQ(stored.at("moveFullscreen"), false);
    EXPECT_EQ(stored.at("excluded"), DefaultsValue::array({"com.example.b", "com.example.a"}));

    auto again = w.open();
    EXPECT_EQ(again.placement(), Placement::fill);
    EXPECT_EQ(again.onConnect(), OnConnect::nothing);
    EXPECT_EQ(again.targetDisplay(), "Desk");
    EXPECT_EQ(again.excluded(), (std::vector<std::string>{"com.example.b", "com.example.a"}));
}

TEST(Prefs, LaunchAtLoginAsksTheServiceAndLogsARefusal) {
    World w;
    auto p = w.open();
    int told = 0;
    auto sub = p.observe([&] { ++told; });

    w.desk.failNextLogin("Operation not permitted");
    p.setLaunchAtLogin(true);
    EXPECT_FALSE(p.launchAtLogin());
    EXPECT_EQ(told, 1); // so a bound toggle re-reads and springs back
    EXPECT_EQ(w.transcript.text(), "0.000 log Launch at login failed: Operation not permitted\n");

    p.setLaunchAtLogin(true);
    EXPECT_TRUE(p.launchAtLogin());
    w.desk.setLoginEnabled(false); // switched off elsewhere: the store does not remember
    EXPECT_FALSE(p.launchAtLogin());
    EXPECT_TRUE(w.desk.userDefaults().empty());
}

namespace {

// Switches the C locale for one scope, as a toolkit does from the environment.
class CLocale {
  public:
    explicit CLocale(const char* name)
        : saved_(std::setlocale(LC_ALL, nullptr)) {
        active_ = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~CLocale() { std::setlocale(LC_ALL, saved_.c_str()); }
    bool active() const { return active_; }

  private:
    std::string saved_;
    bool active_ = false;
};

void expectDelaysReadFromText() {
    const double inf = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<std::string, double>> cases{
        {"2.5", 2.5},
        {" \t4.5 seconds", 4.5},
        {"+1.5", 1.5},
        {"-0.5", -0.5},
        {".5", 0.5},
        {"3", 3},
        {"1e999", inf},
        {"-1e999", -inf},
        {"1e-999", 0},
        {"1e9223372036854775807", inf},
        {"1e-99999999999999999999", 0},
        {"2,5", 2},
        {"", 0},
        {"soon", 0},
        {"+-1", 0},
    };
    for (const auto& [text, want] : cases) {
        World w;
        w.desk.storeUserDefault("delay", text);
        EXPECT_EQ(w.open().delay(), want) << '"' << text << '"';
    }
}

} // namespace

TEST(Prefs, ANumberStoredAsTextReadsAsItsLeadingNumber) {
    expectDelaysReadFromText();
}

TEST(Prefs, ANumberStoredAsTextReadsTheSameUnderACommaLocale) {
    for (const char* name :
         {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "nl_NL.UTF-8"}) {
        CLocale comma(name);
        if (!comma.active()) continue;
        ASSERT_STREQ(std::localeconv()->decimal_point, ",") << name;
        expectDelaysReadFromText();
        return;
    }
    GTEST_SKIP() << "no locale with a decimal comma is installed";
}
