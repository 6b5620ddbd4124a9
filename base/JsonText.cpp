#include "base/JsonText.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace tarnwick {

std::string formatNumber(double v) {
    if (v == 0) return "0"; // also for -0, which reads back as the same position
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, res.ptr);
}

nlohmann::json jsonNumber(double d) {
    // 2^53: beyond it not every integer is a double, so keep the float form.
    if (std::isfinite(d) && std::trunc(d) == d && std::fabs(d) < 9007199254740992.0)
        return static_cast<int64_t>(d);
    return d;
}

std::string dumpCompact(const nlohmann::json& v) {
    return v.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

namespace {

nlohmann::json normalized(const nlohmann::json& v) {
    using json = nlohmann::json;
    if (v.is_number_float()) return jsonNumber(v.get<double>());
    if (v.is_array()) {
        json out = json::array();
        for (const auto& e : v)
            out.push_back(normalized(e));
        return out;
    }
    if (v.is_object()) {
        json out = json::object();
        for (auto it = v.begin(); it != v.end(); ++it)
            out[it.key()] = normalized(it.value());
        return out;
    }
    return v;
}

} // namespace

std::string compactJson(const nlohmann::json& v) {
    return dumpCompact(normalized(v));
}

std::string quoted(const std::string& s) {
    return dumpCompact(nlohmann::json(s));
}

} // namespace tarnwick
