#include "platform/sim/scenario/Lexer.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace tarnwick::sim {

namespace {
std::string shown(const std::string& text);
} // namespace

std::string stripComment(const std::string& line) {
    bool inString = false;
    for (size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '#') {
            return line.substr(0, i);
        }
    }
    return line;
}

Cursor::Cursor(std::string text)
    : text_(std::move(text)) {}

void Cursor::skipSpace() {
    while (pos_ < text_.size() &&
           (text_[pos_] == ' ' || text_[pos_] == '\t' || text_[pos_] == '\r'))
        ++pos_;
}

bool Cursor::atEnd() {
    skipSpace();
    return pos_ >= text_.size();
}

std::string Cursor::peekWord() {
    skipSpace();
    size_t end = pos_;
    while (end < text_.size() && text_[end] != ' ' && text_[end] != '\t' && text_[end] != '\r')
        ++end;
    return text_.substr(pos_, end - pos_);
}

std::string Cursor::word(const char* what) {
    if (atEnd()) throw ParseError(std::string("missing ") + what);
    if (text_[pos_] == '"') throw ParseError(std::string("expected ") + what + ", found a string");
    auto w = peekWord();
    pos_ += w.size();
    return w;
}

std::string Cursor::string(const char* what) {
    if (atEnd()) throw ParseError(std::string("missing ") + what);
    if (text_[pos_] != '"')
        throw ParseError(std::string("expected ") + what + " as a string in double quotes");
    size_t end = pos_ + 1;
    while (end < text_.size() && text_[end] != '"')
        end += text_[end] == '\\' ? 2 : 1;
    if (end >= text_.size()) throw ParseError(std::string("unterminated string in ") + what);
    auto literal = text_.substr(pos_, end + 1 - pos_);
    auto parsed = nlohmann::json::parse(literal, nullptr, false);
    if (parsed.is_discarded() || !parsed.is_string()) {
        for (unsigned char ch : literal)
            if (ch < 0x20)
                throw ParseError(std::string("a control character in ") + what +
                                 " must be written as an escape");
        throw ParseError(std::string("bad escape or invalid UTF-8 in ") + what + ": " +
                         shown(literal));
    }
    pos_ = end + 1;
    if (pos_ < text_.size() && text_[pos_] != ' ' && text_[pos_] != '\t' && text_[pos_] != '\r')
        throw ParseError(std::string("expected a space after ") + what);
    return parsed.get<std::string>();
}

std::string Cursor::wordOrString(const char* what) {
    if (atEnd()) throw ParseError(std::string("missing ") + what);
    return text_[pos_] == '"' ? string(what) : word(what);
}

namespace {

// A token as a message shows it: a number of 30,000 digits is cut short.
std::string shown(const std::string& text) {
    constexpr size_t most = 40;
    if (text.size() <= most) return text;
    size_t cut = most;
    while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80)
        --cut;
    return text.substr(0, cut) + "…";
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

struct Decimal {
    bool negative = false;
    std::string_view whole, fraction;
};

// A plain scan rather than a regular expression: the library's matcher
// recurses once per character, so a long enough number overflowed the stack.
Decimal scanDecimal(const std::string& text, const char* what) {
    Decimal d;
    size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) d.negative = text[i++] == '-';
    size_t start = i;
    while (i < text.size() && isDigit(text[i]))
        ++i;
    d.whole = std::string_view(text).substr(start, i - start);
    if (i < text.size() && text[i] == '.') {
        start = ++i;
        while (i < text.size() && isDigit(text[i]))
            ++i;
        d.fraction = std::string_view(text).substr(start, i - start);
    }
    if (i != text.size() || (d.whole.empty() && d.fraction.empty()))
        throw ParseError(std::string("expected ") + what + " as a number, found '" + shown(text) +
                         "'");
    return d;
}

ParseError outOfRange(const std::string& text, const char* what) {
    return ParseError(std::string(what) + " is out of range: '" + shown(text) + "'");
}

// The magnitude of a whole number, exactly; a fraction may only hold zeros.
uint64_t magnitude(const Decimal& d, const std::string& text, const char* what) {
    if (d.fraction.find_first_not_of('0') != std::string_view::npos)
        throw ParseError(std::string("expected ") + what + " as a whole number, found '" +
                         shown(text) + "'");
    uint64_t v = 0;
    if (d.whole.empty()) return v;
    auto [ptr, ec] = std::from_chars(d.whole.data(), d.whole.data() + d.whole.size(), v);
    if (ec == std::errc::result_out_of_range) throw outOfRange(text, what);
    return v;
}

} // namespace

double Cursor::parseNumber(const std::string& text, const char* what) {
    scanDecimal(text, what);
    const char* start = text.c_str() + (text[0] == '+' ? 1 : 0);
    const char* end = text.c_str() + text.size();
    double v = 0;
    auto [ptr, ec] = std::from_chars(start, end, v);
    if (ec == std::errc::result_out_of_range || (ec == std::errc() && !std::isfinite(v)))
        throw outOfRange(text, what);
    if (ec != std::errc() || ptr != end)
        throw ParseError(std::string("expected ") + what + " as a number, found '" + shown(text) +
                         "'");
    return v;
}

int64_t Cursor::parseInteger(const std::string& text, const char* what, int64_t min, int64_t max) {
    const auto d = scanDecimal(text, what);
    const uint64_t m = magnitude(d, text, what);
    if (m == 0) {
        if (min > 0) throw outOfRange(text, what);
        return 0;
    }
    if (d.negative) {
        // -(min + 1) + 1 is |min| without overflowing when min is INT64_MIN.
        if (min >= 0 || m - 1 > static_cast<uint64_t>(-(min + 1))) throw outOfRange(text, what);
        const int64_t v = -static_cast<int64_t>(m - 1) - 1;
        if (v > max) throw outOfRange(text, what);
        return v;
    }
    if (max < 0 || m > static_cast<uint64_t>(max) || static_cast<int64_t>(m) < min)
        throw outOfRange(text, what);
    return static_cast<int64_t>(m);
}

uint64_t Cursor::parseUnsigned(const std::string& text, const char* what) {
    const auto d = scanDecimal(text, what);
    const uint64_t m = magnitude(d, text, what);
    if (d.negative && m != 0) throw outOfRange(text, what);
    return m;
}

double Cursor::number(const char* what) {
    return parseNumber(word(what), what);
}

int64_t Cursor::integer(const char* what, int64_t min, int64_t max) {
    return parseInteger(word(what), what, min, max);
}

Rect Cursor::parseRect(const std::string& text, const char* what) {
    std::vector<double> parts;
    size_t start = 0;
    for (;;) {
        auto comma = text.find(',', start);
        parts.push_back(parseNumber(text.substr(start, comma - start), what));
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    if (parts.size() != 4)
        throw ParseError(std::string("expected ") + what + " as X,Y,W,H, found '" + text + "'");
    return {parts[0], parts[1], parts[2], parts[3]};
}

Rect Cursor::rect(const char* what) {
    return parseRect(word(what), what);
}

namespace {

// Parses JSON text no deeper than maxJsonDepth; a deeper value is dropped
// while it is read rather than built, since copying or normalising it
// recurses once per level.
nlohmann::json boundedJson(const std::string& text, bool& tooDeep) {
    using json = nlohmann::json;
    tooDeep = false;
    auto limit = [&tooDeep](int depth, json::parse_event_t event, json&) {
        // `depth` counts the containers around this one.
        if ((event == json::parse_event_t::object_start ||
             event == json::parse_event_t::array_start) &&
            depth >= maxJsonDepth)
            tooDeep = true;
        return !tooDeep;
    };
    return json::parse(text, limit, /*allow_exceptions=*/false);
}

} // namespace

nlohmann::json Cursor::jsonRest(const char* what) {
    if (atEnd()) throw ParseError(std::string("missing ") + what);
    auto rest = text_.substr(pos_);
    while (!rest.empty() && (rest.back() == ' ' || rest.back() == '\t' || rest.back() == '\r'))
        rest.pop_back();
    pos_ = text_.size();
    const bool binary = rest.rfind("data:", 0) == 0;
    bool tooDeep = false;
    auto v = boundedJson(binary ? rest.substr(5) : rest, tooDeep);
    if (tooDeep)
        throw ParseError(std::string(what) + " is nested deeper than " +
                         std::to_string(maxJsonDepth) + " levels");
    if (binary) {
        if (v.is_discarded() || !v.is_string())
            throw ParseError(std::string("expected ") + what + ": data:\"TEXT\"");
        auto bytes = v.get<std::string>();
        return nlohmann::json::binary(std::vector<uint8_t>(bytes.begin(), bytes.end()));
    }
    if (v.is_discarded())
        throw ParseError(std::string(what) + " is not valid JSON: " + shown(rest));
    return v;
}

std::map<std::string, std::string> Cursor::options(const std::set<std::string>& valued,
                                                   const std::set<std::string>& flags) {
    std::map<std::string, std::string> out;
    while (!atEnd()) {
        auto w = word("an option");
        auto eq = w.find('=');
        auto name = w.substr(0, eq);
        // A repeated option would silently take its last value.
        if (out.count(name))
            throw ParseError("option '" + name + (eq == std::string::npos ? "" : "=") +
                             "' given twice");
        if (eq == std::string::npos) {
            if (!flags.count(name)) throw ParseError("unknown option '" + name + "'");
            out[name] = "";
        } else {
            if (!valued.count(name)) throw ParseError("unknown option '" + name + "='");
            out[name] = w.substr(eq + 1);
            if (out[name].empty()) throw ParseError("option '" + name + "=' needs a value");
        }
    }
    return out;
}

void Cursor::end() {
    if (!atEnd()) throw ParseError("unexpected '" + peekWord() + "'");
}

} // namespace tarnwick::sim
