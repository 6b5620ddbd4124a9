#include "platform/sim/scenario/Lexer.h"

#include <charconv>
#include <cmath>
#include <regex>

namespace tarnwick::sim {

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
    if (parsed.is_discarded() || !parsed.is_string())
        throw ParseError(std::string("bad escape in ") + what + ": " + literal);
    pos_ = end + 1;
    if (pos_ < text_.size() && text_[pos_] != ' ' && text_[pos_] != '\t' && text_[pos_] != '\r')
        throw ParseError(std::string("expected a space after ") + what);
    return parsed.get<std::string>();
}

std::string Cursor::wordOrString(const char* what) {
    if (atEnd()) throw ParseError(std::string("missing ") + what);
    return text_[pos_] == '"' ? string(what) : word(what);
}

double Cursor::parseNumber(const std::string& text, const char* what) {
    static const std::regex form(R"([+-]?(\d+(\.\d*)?|\.\d+))");
    if (!std::regex_match(text, form))
        throw ParseError(std::string("expected ") + what + " as a number, found '" + text + "'");
    auto start = text.c_str() + (text[0] == '+' ? 1 : 0);
    double v = 0;
    std::from_chars(start, text.c_str() + text.size(), v);
    return v;
}

double Cursor::number(const char* what) {
    return parseNumber(word(what), what);
}

int64_t Cursor::integer(const char* what) {
    auto w = word(what);
    double v = parseNumber(w, what);
    if (std::trunc(v) != v || std::fabs(v) > 9e15)
        throw ParseError(std::string("expected ") + what + " as a whole number, found '" + w + "'");
    return static_cast<int64_t>(v);
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

nlohmann::json Cursor::jsonRest(const char* what) {
    if (atEnd()) throw ParseError(std::string("missing ") + what);
    auto rest = text_.substr(pos_);
    while (!rest.empty() && (rest.back() == ' ' || rest.back() == '\t' || rest.back() == '\r'))
        rest.pop_back();
    pos_ = text_.size();
    if (rest.rfind("data:", 0) == 0) {
        auto s = nlohmann::json::parse(rest.substr(5), nullptr, false);
        if (s.is_discarded() || !s.is_string())
            throw ParseError(std::string("expected ") + what + ": data:\"TEXT\"");
        auto bytes = s.get<std::string>();
        return nlohmann::json::binary(std::vector<uint8_t>(bytes.begin(), bytes.end()));
    }
    auto v = nlohmann::json::parse(rest, nullptr, false);
    if (v.is_discarded()) throw ParseError(std::string(what) + " is not valid JSON: " + rest);
    return v;
}

std::map<std::string, std::string> Cursor::options(const std::set<std::string>& valued,
                                                   const std::set<std::string>& flags) {
    std::map<std::string, std::string> out;
    while (!atEnd()) {
        auto w = word("an option");
        auto eq = w.find('=');
        auto name = w.substr(0, eq);
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
