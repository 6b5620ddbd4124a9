#include "setup/Setup.h"

namespace tarnwick {

const char* rawValue(SetupModel::Step step) {
    switch (step) {
    case SetupModel::Step::move:
        return "move";
    case SetupModel::Step::permission:
        return "permission";
    case SetupModel::Step::login:
        return "login";
    case SetupModel::Step::done:
        return "done";
    }
    return "done";
}

void Setup::takeOverFromOtherCopies() {}
std::optional<SetupModel::Step> Setup::needs() {
    return std::nullopt;
}

} // namespace tarnwick
