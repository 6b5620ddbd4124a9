#include "settings/AppRows.h"

#include "ports/Files.h"
#include "ports/Workspace.h"

#include <algorithm>

namespace tarnwick {

namespace {

// Base letters of U+00C0 to U+00FF; a blank keeps the character as it is
// (×, ÷, Þ, þ have no base letter among the ASCII ones).
constexpr std::string_view latin1Base[64] = {
    "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i", "i",
    "d", "n", "o", "o", "o", "o", "o",  "",  "o", "u", "u", "u", "u", "y", "",  "ss",
    "a", "a", "a", "a", "a", "a", "ae", "c", "e", "e", "e", "e", "i", "i", "i", "i",
    "d", "n", "o", "o", "o", "o", "o",  "",  "o", "u", "u", "u", "u", "y", "",  "y",
};

char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The first pass: case and Latin accents folded away.
std::string baseKey(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size(); ++i) {
        const auto c = static_cast<unsigned char>(s[i]);
        if (c == 0xC3 && i + 1 < s.size()) {
            const auto next = static_cast<unsigned char>(s[i + 1]);
            if (next >= 0x80 && next <= 0xBF && !latin1Base[next - 0x80].empty()) {
                out += latin1Base[next - 0x80];
                ++i;
                continue;
            }
        }
        out += lowerAscii(s[i]);
    }
    return out;
}

// The tie-break: case folded, accents kept. In UTF-8 the upper-case Latin-1
// letters (U+00C0..U+00DE but ×) sit 0x20 below their lower-case forms in
// the second byte, as in ASCII.
std::string caseKey(std::string_view s) {
    std::string out(s);
    for (size_t i = 0; i < out.size(); ++i) {
        out[i] = lowerAscii(out[i]);
        if (static_cast<unsigned char>(out[i]) == 0xC3 && i + 1 < out.size()) {
            const auto next = static_cast<unsigned char>(out[i + 1]);
            if (next >= 0x80 && next <= 0x9E && next != 0x97)
                out[i + 1] = static_cast<char>(next + 0x20);
            ++i;
        }
    }
    return out;
}

} // namespace

int compareNames(std::string_view a, std::string_view b) {
    if (int c = baseKey(a).compare(baseKey(b)); c != 0) return c;
    return caseKey(a).compare(caseKey(b));
}

namespace {

bool listed(const std::vector<AppRow>& rows, const std::string& bundle) {
    return std::any_of(rows.begin(), rows.end(),
                       [&](const AppRow& r) { return r.bundle == bundle; });
}

} // namespace

std::vector<AppRow> runningAppRows(Workspace& workspace) {
    const auto own = workspace.programIdentifier();
    std::vector<AppRow> rows;
    for (const auto& app : workspace.runningApplications()) {
        // Agents and background helpers have no windows worth moving.
        if (!app || app->kind != AppKind::regular || !app->identifier) continue;
        const auto& bundle = *app->identifier;
        // A second copy of an application would give two rows one identity.
        if ((own && bundle == *own) || listed(rows, bundle)) continue;
        rows.push_back({bundle, app->name.value_or(bundle), app->icon});
    }
    return rows;
}

std::vector<AppRow> appRows(Workspace& workspace, Files& files,
                            const std::vector<std::string>& excluded) {
    return appRows(runningAppRows(workspace), workspace, files, excluded);
}

std::vector<AppRow> appRows(std::vector<AppRow> running, Workspace& workspace, Files& files,
                            const std::vector<std::string>& excluded) {
    auto rows = std::move(running);
    for (const auto& bundle : excluded) {
        if (listed(rows, bundle)) continue;
        if (auto location = workspace.applicationLocation(bundle))
            rows.push_back({bundle, files.displayName(*location), workspace.icon(*location)});
        else
            rows.push_back({bundle, bundle, ""});
    }
    std::stable_sort(rows.begin(), rows.end(), [](const AppRow& a, const AppRow& b) {
        return compareNames(a.name, b.name) < 0;
    });
    return rows;
}

} // namespace tarnwick
