#include "setup/SetupWindow.h"

#include "tests/setup/SetupWorld.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::setuptest::SetupWorld;
using Step = SetupModel::Step;
using Events = std::vector<std::string>;

namespace {

struct WindowWorld : SetupWorld {
    Setup setup{setupPorts()};
    SetupWindow window{*this, modelPorts(), setup, [this] { events.push_back("settings"); }};
    SetupView& view() { return *window.view(); }
    std::vector<std::string> labels() {
        std::vector<std::string> out;
        for (const auto& b : view().card().buttons)
            out.push_back(b.label + (b.isDefault ? " (default)" : ""));
        return out;
    }
};

} // namespace

TEST(SetupView, ChecklistFollowsTheStep) {
    auto states = [](Step step) {
        std::vector<RowState> out;
        for (const auto& r : setupChecklist(step))
            out.push_back(r.state);
        return out;
    };
    using R = RowState;
    EXPECT_EQ(states(Step::move), (std::vector{R::current, R::pending, R::pending}));
    EXPECT_EQ(states(Step::login), (std::vector{R::complete, R::complete, R::current}));
    EXPECT_EQ(states(Step::done), (std::vector{R::complete, R::complete, R::complete}));
    auto rows = setupChecklist(Step::login);
    EXPECT_EQ(rows[0].symbol, "checkmark.circle.fill");
    EXPECT_EQ(rows[0].symbolColour, SetupColour::green);
    EXPECT_EQ(rows[2].symbol, "circle.inset.filled");
    EXPECT_EQ(rows[2].symbolColour, SetupColour::accent);
    EXPECT_EQ(rows[2].weight, FontWeight::semibold);
    auto pending = setupChecklist(Step::move)[1];
    EXPECT_EQ(pending.symbol, "circle");
    EXPECT_EQ(pending.titleColour, SetupColour::secondary);
}

TEST(SetupView, MoveCardSaysWhereItRunsFromAndKeepsTheError) {
    EXPECT_NE(setupCard(Step::move, false, std::nullopt, true).body.find("from your Downloads."),
              std::string::npos);
    EXPECT_NE(
        setupCard(Step::move, false, std::nullopt, false).body.find("from outside Applications."),
        std::string::npos);
    // The error belongs to the move and reappears once the user kept the copy where it is.
    EXPECT_EQ(setupCard(Step::move, false, "e", false).error, "e");
    EXPECT_EQ(setupCard(Step::permission, false, "e", false).error, std::nullopt);
    EXPECT_EQ(setupCard(Step::login, false, "e", false).error, std::nullopt);
    EXPECT_EQ(setupCard(Step::done, false, "e", false).error, "e");
}

TEST(SetupView, PermissionCardWaitsOnceAsked) {
    WindowWorld w;
    w.trusted = false;
    w.window.show(Step::permission);
    EXPECT_EQ(w.labels(), (Events{"Open System Settings (default)"}));
    EXPECT_FALSE(w.view().card().footer);
    int told = 0;
    auto sub = w.view().observe([&] { ++told; });
    EXPECT_TRUE(w.view().press("Open System Settings"));
    EXPECT_GT(told, 0);
    EXPECT_EQ(w.labels(), (Events{"Reset and try again"}));
    EXPECT_EQ(
        w.view().texts(),
        (Events{"Set up Tarnwick", "Three quick steps, only once.", "In the Applications folder",
                "Accessibility access", "Open at login, if you want", "Allow Accessibility access",
                w.view().card().body, "Waiting. Turn on Tarnwick in the list.",
                "Reset and try again", *w.view().card().footer}));
    // The old button is gone with its card.
    EXPECT_FALSE(w.view().press("Open System Settings"));
    EXPECT_FALSE(w.view().press(SetupAction::openSystemSettings));
}

TEST(SetupView, AnsweringTheCardsWalksToTheEnd) {
    WindowWorld w;
    w.bundle = "/Users/me/Downloads/Tarnwick.app";
    w.window.show(Step::move);
    EXPECT_TRUE(w.view().press("Keep it here"));
    EXPECT_EQ(w.user["setup.skipMove"], true);
    EXPECT_EQ(w.window.model()->step(), Step::login);
    EXPECT_EQ(w.labels(), (Events{"Open at login (default)", "Not now"}));
    EXPECT_TRUE(w.view().press("Not now"));
    EXPECT_EQ(w.user["setup.askedLogin"], true);
    EXPECT_EQ(w.view().header().title, "Tarnwick is ready");
    EXPECT_EQ(w.labels(), (Events{"Done (default)", "Open settings"}));
}

TEST(SetupWindow, ShowReusesAVisibleWindowButNeverRewindsAFinishedOne) {
    WindowWorld w;
    w.window.show(Step::move);
    EXPECT_EQ(w.events, (Events{"window new Welcome to Tarnwick", "window centre", "activate",
                                "window front"}));
    auto first = w.window.model();
    w.events.clear();
    w.window.show(Step::permission);
    EXPECT_EQ(w.window.model(), first);
    EXPECT_EQ(first->step(), Step::permission);
    EXPECT_EQ(first->stepAnimation(), std::nullopt);
    EXPECT_EQ(w.events, (Events{"activate", "window front"}));
    first->setStep(Step::done);
    w.window.show(Step::permission);
    EXPECT_EQ(first->step(), Step::done);
}

TEST(SetupWindow, AHiddenWindowIsReplacedWithAFreshModel) {
    WindowWorld w;
    w.probeAnswer = axAPIDisabled;
    w.window.show(Step::move);
    std::weak_ptr<SetupModel> first = w.window.model();
    w.window.window()->close(); // the close button: hidden, still held
    EXPECT_FALSE(w.window.visible());
    EXPECT_FALSE(first.expired());
    w.window.show(Step::permission);
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(w.window.model()->step(), Step::permission);
    EXPECT_TRUE(w.window.visible());
}

TEST(SetupWindow, DoneAndOpenSettingsReleaseEverything) {
    for (const char* button : {"Done", "Open settings"}) {
        WindowWorld w;
        w.probeAnswer = axAPIDisabled;
        w.window.show(Step::done);
        std::weak_ptr<SetupModel> model = w.window.model();
        std::weak_ptr<SetupView> view = w.window.view();
        w.events.clear();
        EXPECT_TRUE(w.view().press(button));
        EXPECT_FALSE(w.window.window());
        EXPECT_TRUE(model.expired() && view.expired()) << button;
        // Closed first, so that the settings window comes up alone.
        const Events want = std::string(button) == "Done" ? Events{"window close"}
                                                          : Events{"window close", "settings"};
        EXPECT_EQ(w.events, want) << button;
        // Nothing polls once the model is gone.
        w.window.show(Step::permission);
        w.window.close();
        const int probes = w.probes;
        w.runFor(5);
        EXPECT_EQ(w.probes, probes);
    }
}
