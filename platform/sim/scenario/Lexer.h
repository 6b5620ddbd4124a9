#pragma once

#include "base/Geometry.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnwick::sim {

// A malformed statement; the message says what is wrong.
struct ParseError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The deepest nesting of arrays and objects a JSON value may have, as the
// desktop's own defaults reader allows: normalising and copying a value
// recurse once per level.
inline constexpr int maxJsonDepth = 64;

// Removes a comment: everything from `#` outside a string to the end of the line.
std::string stripComment(const std::string& line);

// Reads the words of one statement, left to right.
class Cursor {
  public:
    explicit Cursor(std::string text);

    bool atEnd();
    std::string peekWord();
    std::string word(const char* what);
    std::string string(const char* what);
    std::string wordOrString(const char* what);
    double number(const char* what);
    int64_t integer(const char* what, int64_t min = INT64_MIN, int64_t max = INT64_MAX);
    Rect rect(const char* what);
    // A JSON value running to the end of the line; `data:"TEXT"` is binary data.
    nlohmann::json jsonRest(const char* what);
    // `name=value` words and bare flags, in any order, up to the end.
    std::map<std::string, std::string> options(const std::set<std::string>& valued,
                                               const std::set<std::string>& flags);
    void end();

    static Rect parseRect(const std::string& text, const char* what);
    // A decimal `[+-]?(\d+(\.\d*)?|\.\d+)` that is a finite double.
    static double parseNumber(const std::string& text, const char* what);
    // The same form holding a whole number within [min, max], read exactly
    // rather than through a double; a fraction may only hold zeros.
    static int64_t parseInteger(const std::string& text, const char* what, int64_t min,
                                int64_t max);
    static uint64_t parseUnsigned(const std::string& text, const char* what);

  private:
    void skipSpace();
    std::string text_;
    size_t pos_ = 0;
};

} // namespace tarnwick::sim
