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

namespace {

// Texts such as a status carry names from other programs (an application's,
// a window's), which may hold any character: a control character is written
// as its JSON escape, so that one event stays one line of the transcript.
std::string oneLine(const std::string& text) {
    const bool clean = std::none_of(text.begin(), text.end(),
                                    [](unsigned char c) { return c < 0x20 || c == 0x7f; });
    if (clean) return text;
    std::string out;
    for (unsigned char c : text) {
        if (c >= 0x20 && c != 0x7f) {
            out += static_cast<char>(c);
            continue;
        }
        const std::string escaped = tarnwick::quoted(std::string(1, static_cast<char>(c)));
        out += c == 0x7f ? std::string("\\u007f") : escaped.substr(1, escaped.size() - 2);
    }
    return out;
}

} // namespace

void Transcript::line(const std::string& word, const std::string& payload) {
    if (dispatch_.stopped()) return;
    std::string l = time(dispatch_.nowMicros()) + " " + word;
    if (!payload.empty()) l += " " + oneLine(payload);
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
