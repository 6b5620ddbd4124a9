#include "platform/sim/Transcript.h"

#include "base/JsonText.h"
#include "platform/sim/SimDispatch.h"

#include <algorithm>
#include <cinttypes>

namespace tarnwick::sim {

std::string Transcript::time(int64_t micros) {
    const int64_t ms = (micros + 500) / 1000;
    char buf[32];
    std::snprintf(buf, sizeof buf, "%" PRId64 ".%03" PRId64, ms / 1000, ms % 1000);
    return buf;
}

void Transcript::line(const std::string& word, const std::string& payload) {
    if (dispatch_.stopped()) return;
    std::string l = time(dispatch_.nowMicros()) + " " + word;
    if (!payload.empty()) l += " " + payload;
    l += "\n";
    text_ += l;
    if (echo_) {
        std::fputs(l.c_str(), echo_);
        std::fflush(echo_);
    }
}

std::string formatRect(const Rect& r) {
    return formatNumber(r.x) + "," + formatNumber(r.y) + "," + formatNumber(r.w) + "," +
           formatNumber(r.h);
}

std::string formatDefaultsValue(const DefaultsValue& v) {
    if (v.is_binary()) {
        const auto& bytes = v.get_binary();
        return "data:" + tarnwick::quoted(std::string(bytes.begin(), bytes.end()));
    }
    return compactJson(v);
}

std::string bareOrQuoted(const std::string& s) {
    // A bare word must survive the scenario lexer: no blanks, quotes,
    // backslashes, comment marks or control characters.
    const bool bare = !s.empty() && std::none_of(s.begin(), s.end(), [](unsigned char c) {
        return c <= ' ' || c == '"' || c == '\\' || c == '#' || c == 0x7f;
    });
    return bare ? s : tarnwick::quoted(s);
}

} // namespace tarnwick::sim
