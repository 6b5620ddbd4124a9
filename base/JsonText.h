#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace tarnwick {

// The shortest decimal that reads back to the same double ("1715", "0.6").
std::string formatNumber(double v);

// A JSON number that is written in its shortest form: integral values
// become integers, so they are written without a fraction.
nlohmann::json jsonNumber(double v);

// JSON text with no spaces or line breaks, strings kept in UTF-8.
std::string dumpCompact(const nlohmann::json& v);

// Compact JSON with numbers in their shortest form: a double that holds an
// integer is written without a fraction.
std::string compactJson(const nlohmann::json& v);

// A JSON string literal of `s`, with JSON escapes.
std::string quoted(const std::string& s);

} // namespace tarnwick
