#include "setup/SetupWindow.h"

namespace tarnwick {

const char* rawValue(SetupStep step) {
    switch (step) {
    case SetupStep::move:
        return "move";
    case SetupStep::permission:
        return "permission";
    case SetupStep::login:
        return "login";
    case SetupStep::done:
        return "done";
    }
    return "done";
}

} // namespace tarnwick
