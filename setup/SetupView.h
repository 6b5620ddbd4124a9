#pragma once

#include "base/Observable.h"
#include "ports/Surfaces.h"
#include "setup/SetupModel.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick {

class Setup;

// Sizes of the first-run window, in points.
namespace SetupLayout {
inline constexpr double width = 460;
inline constexpr double padding = 24;    // all four sides
inline constexpr double spacing = 22;    // between header, checklist and card
inline constexpr double iconSize = 56;   // the application icon, square
inline constexpr double iconGap = 14;    // icon to the header's texts
inline constexpr double titleGap = 2;    // header title to subtitle (title2 bold; secondary)
inline constexpr double rowSpacing = 10; // between checklist rows
inline constexpr double symbolSize = 16; // a row's status symbol, system font
inline constexpr double symbolGap = 10;  // symbol to row title
inline constexpr double cardPadding = 14;
inline constexpr double cardCornerRadius = 12; // continuous corners
inline constexpr double cardFillOpacity = 0.5; // of the quaternary fill
inline constexpr double cardSpacing = 10;      // title (headline), body, error, buttons, footer
inline constexpr double buttonSpacing = 10;
inline constexpr double buttonsTopPadding = 6;
inline constexpr double spinnerGap = 8; // the small spinner to its waiting text (callout)
} // namespace SetupLayout

// What a button of a card does when pressed.
enum class SetupAction {
    moveToApplications,
    keepHere,
    openSystemSettings,
    resetAndTryAgain,
    openAtLogin,
    notNow,
    done,
    openSettings,
};

struct SetupButton {
    std::string label;
    bool isDefault = false; // answers the Return key
    SetupAction action = SetupAction::done;
    bool operator==(const SetupButton&) const = default;
};

enum class RowState { complete, current, pending };
enum class SetupColour { primary, secondary, accent, green, red };
// "complete", "primary", …: how views and transcripts name them.
const char* rowStateName(RowState s);
const char* colourName(SetupColour c);

struct ChecklistRow {
    std::string title;
    SetupModel::Step step = SetupModel::Step::move;
    RowState state = RowState::pending;
    std::string symbol; // a named symbol image; a replace transition when it changes
    SetupColour symbolColour = SetupColour::secondary;
    FontWeight weight = FontWeight::regular;
    SetupColour titleColour = SetupColour::secondary;
};

struct SetupHeader {
    std::string title;
    std::string subtitle;
};

// The card of one step. A step change replaces the whole card, which fades
// and slides in from the trailing edge.
struct SetupCard {
    SetupModel::Step step = SetupModel::Step::move; // the card's identity
    std::string title;                              // headline
    std::string body;                               // secondary, wraps, never truncated
    std::optional<std::string> error;               // red, callout size
    // A spinner with this text leads the button row, a flexible space after it.
    std::optional<std::string> waiting;
    std::vector<SetupButton> buttons;
    std::optional<std::string> footer; // caption, secondary
};

// The contents of the window for a model state; pure, so a view only lays out.
SetupHeader setupHeader(SetupModel::Step step);
std::vector<ChecklistRow> setupChecklist(SetupModel::Step step);
SetupCard setupCard(SetupModel::Step step, bool asked, const std::optional<std::string>& error,
                    bool translocated);

// The view model the first-run window draws: it follows one SetupModel and
// hands every button to the model, to Setup, or to the window.
class SetupView : public Observable, public std::enable_shared_from_this<SetupView> {
  public:
    SetupView(std::shared_ptr<SetupModel> model, Setup& setup, std::function<void()> close,
              std::function<void()> showSettings);

    const std::shared_ptr<SetupModel>& model() const { return m_; }
    SetupHeader header() const;
    std::vector<ChecklistRow> checklist() const;
    SetupCard card() const;
    // Every text shown, top to bottom and leading to trailing.
    std::vector<std::string> texts() const;

    // Presses a button of the current card; false when the card has none
    // doing that (a click that arrives after the card changed).
    bool press(SetupAction action);
    bool press(const std::string& label);

  private:
    std::shared_ptr<SetupModel> m_;
    Setup& setup_;
    std::function<void()> close_;
    std::function<void()> showSettings_;
    Subscription subscription_;
};

} // namespace tarnwick
