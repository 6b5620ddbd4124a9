#include "setup/SetupWindow.h"

#include "tests/setup/SetupWorld.h"

#include <gtest/gtest.h>

using namespace tarnwick;
using tarnwick::setuptest::SetupWorld;
using Step = SetupModel::Step;
using Lines = std::vector<std::string>;

namespace {

Lines labels(const SetupView& view) {
    Lines out;
    for (const auto& b : view.card().buttons)
        out.push_back(b.label + (b.isDefault ? " (default)" : ""));
    return out;
}

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
    const auto rows = setupChecklist(Step::permission);
    EXPECT_EQ(rows[0].symbol, "checkmark.circle.fill");
    EXPECT_EQ(rows[0].symbolColour, SetupColour::green);
    EXPECT_EQ(rows[1].symbol, "circle.inset.filled");
    EXPECT_EQ(rows[1].weight, FontWeight::semibold);
    EXPECT_EQ(rows[2].symbol, "circle");
    EXPECT_EQ(rows[2].titleColour, SetupColour::secondary);
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
    SetupWorld w;
    w.desk.setTrusted(false);
    w.window.show(Step::permission);
    auto& view = *w.window.view();
    EXPECT_EQ(labels(view), Lines{"Open System Settings (default)"});
    EXPECT_FALSE(view.card().footer);
    int told = 0;
    auto sub = view.observe([&] { ++told; });
    EXPECT_TRUE(view.press("Open System Settings"));
    EXPECT_GT(told, 0);
    EXPECT_EQ(labels(view), Lines{"Reset and try again"});
    EXPECT_EQ(view.texts(), (Lines{"Set up Tarnwick", "Three quick steps, only once.",
                                   "In the Applications folder", "Accessibility access",
                                   "Open at login, if you want", "Allow Accessibility access",
                                   view.card().body, "Waiting. Turn on Tarnwick in the list.",
                                   "Reset and try again", *view.card().footer}));
    // A click that arrives after its card went does nothing.
    EXPECT_FALSE(view.press(SetupAction::openSystemSettings));
}

TEST(SetupWindow, ShowReusesAVisibleWindowButNeverRewindsAFinishedOne) {
    SetupWorld w;
    w.window.show(Step::move);
    EXPECT_EQ(w.did(), (Lines{"0.000 activate", "0.000 window setup shown"}));
    auto* window = dynamic_cast<sim::SimWindow*>(w.window.window());
    ASSERT_TRUE(window);
    EXPECT_EQ(window->title(), "Welcome to Tarnwick");
    EXPECT_EQ(window->origin().x, (1512 - window->size().w) / 2); // centred
    auto first = w.window.model();
    w.window.show(Step::permission);
    EXPECT_EQ(w.window.model(), first);
    EXPECT_EQ(first->step(), Step::permission);
    EXPECT_EQ(first->stepAnimation(), std::nullopt);
    EXPECT_EQ(w.did(), Lines{"0.000 activate"});
    first->advance();
    first->advance();
    w.window.show(Step::permission);
    EXPECT_EQ(first->step(), Step::done);
}

TEST(SetupWindow, AHiddenWindowIsReplacedWithAFreshModel) {
    SetupWorld w;
    w.window.show(Step::move);
    std::weak_ptr<SetupModel> first = w.window.model();
    dynamic_cast<sim::SimWindow&>(*w.window.window()).closeBox();
    EXPECT_FALSE(w.window.visible());
    EXPECT_FALSE(first.expired()); // held, and still polling, until replaced
    w.window.show(Step::permission);
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(w.window.model()->step(), Step::permission);
    EXPECT_TRUE(w.window.visible());
}

TEST(SetupWindow, DoneAndOpenSettingsReleaseEverything) {
    for (const std::string button : {"Done", "Open settings"}) {
        SetupWorld w;
        w.window.show(Step::done);
        std::weak_ptr<SetupModel> model = w.window.model();
        std::weak_ptr<SetupView> view = w.window.view();
        w.did();
        EXPECT_TRUE(w.window.view()->press(button));
        EXPECT_FALSE(w.window.window());
        EXPECT_TRUE(model.expired() && view.expired()) << button;
        // Closed first, so that the settings window comes up alone.
        const Lines want = button == "Done"
                               ? Lines{"0.000 window setup hidden"}
                               : Lines{"0.000 window setup hidden", "0.000 settings shown"};
        EXPECT_EQ(w.did(), want) << button;
    }
}
