#include "platform/sim/Transcript.h"

#include "platform/sim/SimDispatch.h"

#include <cinttypes>

namespace tarnwick::sim {

std::string Transcript::time(int64_t micros) {
    const int64_t ms = (micros + 500) / 1000;
    char buf[32];
    std::snprintf(buf, sizeof buf, "%" PRId64 ".%03" PRId64, ms / 1000, ms % 1000);
    return buf;
}

void Transcript::line(const std::string& word, const std::string& payload) {
    std::string l = time(dispatch_.nowMicros()) + " " + word;
    if (!payload.empty()) l += " " + payload;
    l += "\n";
    text_ += l;
    if (echo_) {
        std::fputs(l.c_str(), echo_);
        std::fflush(echo_);
    }
}

} // namespace tarnwick::sim
