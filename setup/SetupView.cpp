#include "setup/SetupView.h"

#include "setup/Setup.h"

#include <algorithm>

namespace tarnwick {

const char* rowStateName(RowState s) {
    switch (s) {
    case RowState::complete:
        return "complete";
    case RowState::current:
        return "current";
    case RowState::pending:
        break;
    }
    return "pending";
}

const char* colourName(SetupColour c) {
    switch (c) {
    case SetupColour::primary:
        return "primary";
    case SetupColour::secondary:
        return "secondary";
    case SetupColour::accent:
        return "accent";
    case SetupColour::green:
        return "green";
    case SetupColour::red:
        break;
    }
    return "red";
}

using Step = SetupModel::Step;

SetupHeader setupHeader(Step step) {
    if (step == Step::done) return {"Tarnwick is ready", "You won't see this again."};
    return {"Set up Tarnwick", "Three quick steps, only once."};
}

std::vector<ChecklistRow> setupChecklist(Step step) {
    const std::pair<const char*, Step> rows[] = {
        {"In the Applications folder", Step::move},
        {"Accessibility access", Step::permission},
        {"Open at login, if you want", Step::login},
    };
    std::vector<ChecklistRow> out;
    for (const auto& [title, rowStep] : rows) {
        ChecklistRow r{.title = title, .step = rowStep};
        if (static_cast<int>(step) > static_cast<int>(rowStep)) {
            r.state = RowState::complete;
            r.symbol = "checkmark.circle.fill";
            r.symbolColour = SetupColour::green;
            r.weight = FontWeight::regular;
            r.titleColour = SetupColour::primary;
        } else if (step == rowStep) {
            r.state = RowState::current;
            r.symbol = "circle.inset.filled";
            r.symbolColour = SetupColour::accent;
            r.weight = FontWeight::semibold;
            r.titleColour = SetupColour::primary;
        } else {
            r.state = RowState::pending;
            r.symbol = "circle";
            r.symbolColour = SetupColour::secondary;
            r.weight = FontWeight::regular;
            r.titleColour = SetupColour::secondary;
        }
        out.push_back(std::move(r));
    }
    return out;
}

SetupCard setupCard(Step step, bool asked, const std::optional<std::string>& error,
                    bool translocated) {
    SetupCard c{.step = step};
    switch (step) {
    case Step::move:
        c.title = "Move Tarnwick to Applications";
        c.body = std::string("It's running from ") +
                 (translocated ? "your Downloads" : "outside Applications") +
                 ". macOS only keeps permissions reliably for apps in the Applications folder. "
                 "This moves it there and reopens it.";
        c.error = error;
        c.buttons = {{"Move to Applications", true, SetupAction::moveToApplications},
                     {"Keep it here", false, SetupAction::keepHere}};
        break;
    case Step::permission:
        c.title = "Allow Accessibility access";
        c.body = "Tarnwick moves other apps' windows, which macOS only allows for apps you "
                 "approve under Privacy & Security, Accessibility. Click the button, then switch "
                 "Tarnwick on in the list.";
        if (!asked) {
            c.buttons = {{"Open System Settings", true, SetupAction::openSystemSettings}};
        } else {
            c.waiting = "Waiting. Turn on Tarnwick in the list.";
            c.buttons = {{"Reset and try again", false, SetupAction::resetAndTryAgain}};
            c.footer = "Switched on but still waiting? Click Reset and try again, then switch "
                       "Tarnwick on once more. That clears an approval left over from an older "
                       "copy.";
        }
        break;
    case Step::login:
        c.title = "Open Tarnwick at login?";
        c.body = "So it's already running the next time you plug in a monitor, with nothing to "
                 "remember.";
        c.buttons = {{"Open at login", true, SetupAction::openAtLogin},
                     {"Not now", false, SetupAction::notNow}};
        c.footer = "You can change this any time in Tarnwick's settings.";
        break;
    case Step::done:
        c.title = "All set";
        c.body = "Tarnwick lives in the menu bar. Plug in a monitor and the picker drops out of "
                 "the notch, or open settings to move windows by hand.";
        // A move that failed before the user kept the copy where it is stays said.
        c.error = error;
        c.buttons = {{"Done", true, SetupAction::done},
                     {"Open settings", false, SetupAction::openSettings}};
        break;
    }
    return c;
}

SetupView::SetupView(std::shared_ptr<SetupModel> model, Setup& setup, std::function<void()> close,
                     std::function<void()> showSettings)
    : m_(std::move(model))
    , setup_(setup)
    , close_(std::move(close))
    , showSettings_(std::move(showSettings)) {
    subscription_ = m_->observe([this] { didChange(); });
}

SetupHeader SetupView::header() const {
    return setupHeader(m_->step());
}

std::vector<ChecklistRow> SetupView::checklist() const {
    return setupChecklist(m_->step());
}

SetupCard SetupView::card() const {
    return setupCard(m_->step(), m_->asked(), m_->error(), setup_.isTranslocated());
}

std::vector<std::string> SetupView::texts() const {
    const auto h = header();
    std::vector<std::string> out{h.title, h.subtitle};
    for (const auto& row : checklist())
        out.push_back(row.title);
    auto c = card();
    out.push_back(c.title);
    out.push_back(c.body);
    if (c.error) out.push_back(*c.error);
    if (c.waiting) out.push_back(*c.waiting);
    for (const auto& b : c.buttons)
        out.push_back(b.label);
    if (c.footer) out.push_back(*c.footer);
    return out;
}

bool SetupView::press(SetupAction action) {
    const auto buttons = card().buttons;
    if (std::none_of(buttons.begin(), buttons.end(),
                     [&](const SetupButton& b) { return b.action == action; }))
        return false;
    // Closing empties the window's slots, which may hold the last reference to this view.
    auto self = shared_from_this();
    auto& m = *m_;
    switch (action) {
    case SetupAction::moveToApplications:
        m.moveToApplications();
        break;
    case SetupAction::keepHere:
        setup_.skipMove();
        m.advance();
        break;
    case SetupAction::openSystemSettings:
    case SetupAction::resetAndTryAgain:
        m.requestPermission();
        break;
    case SetupAction::openAtLogin:
    case SetupAction::notNow:
        setup_.setLogin(action == SetupAction::openAtLogin);
        m.advance();
        break;
    case SetupAction::done:
        if (close_) close_();
        break;
    case SetupAction::openSettings:
        // Closed first, so that the settings window comes up in front and alone.
        if (close_) close_();
        if (showSettings_) showSettings_();
        break;
    }
    return true;
}

bool SetupView::press(const std::string& label) {
    for (const auto& b : card().buttons)
        if (b.label == label) return press(b.action);
    return false;
}

} // namespace tarnwick
