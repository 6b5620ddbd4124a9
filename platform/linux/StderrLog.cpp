#include "platform/linux/StderrLog.h"

#include <chrono>
#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace tarnwick::xdg {

void StderrLog::write(const std::string& text) {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const auto t = system_clock::to_time_t(now);
    const auto ms = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm tm{};
    gmtime_r(&t, &tm);
    char stamp[64];
    std::snprintf(stamp, sizeof stamp, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", tm.tm_year + 1900,
                  tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec,
                  static_cast<int>(ms));
    // A newline inside a text would forge a line of its own.
    std::string clean = text;
    for (auto& c : clean)
        if (c == '\n' || c == '\r') c = ' ';
    const std::string out =
        std::string(stamp) + " tarnwick[" + std::to_string(getpid()) + "]: " + clean + "\n";
    std::lock_guard lock(mutex_);
    (void)!::write(2, out.data(), out.size());
}

} // namespace tarnwick::xdg
