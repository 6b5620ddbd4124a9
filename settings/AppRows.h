#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

class Files;
class Workspace;

// One line of the "Apps to move" list.
struct AppRow {
    std::string bundle; // the row's identity
    std::string name;
    std::string icon; // a name the views can load; empty for none
    bool operator==(const AppRow&) const = default;
};

// The applications the user can leave alone: the running ones with a Dock
// presence and a bundle identifier (not this program), then every excluded
// one that is not running, so that unchecking an app is never lost from view
// when it quits. Sorted by name; rows with equal names keep that order.
std::vector<AppRow> appRows(Workspace& workspace, Files& files,
                            const std::vector<std::string>& excluded);

// The same in two parts. Listing the running applications is the costly
// one (on a real desktop it reads every window there is), so a caller that
// draws often keeps its result: `runningAppRows` lists them, each once and
// in the order listed, and `appRows` adds the excluded ones and sorts.
std::vector<AppRow> runningAppRows(Workspace& workspace);
std::vector<AppRow> appRows(std::vector<AppRow> running, Workspace& workspace, Files& files,
                            const std::vector<std::string>& excluded);

// Orders names the way a person reading the list expects rather than by
// bytes: letter case is ignored, and the accented Latin letters sort with
// their base letter ("Éclair" between "Eagle" and "Fig"), an accent only
// breaking a tie ("Ecran" before "Écran"). Other characters fall back to code
// point order. Negative, zero or positive like strcmp.
int compareNames(std::string_view a, std::string_view b);

} // namespace tarnwick
