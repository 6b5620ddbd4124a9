#pragma once

#include "base/Geometry.h"
#include "ports/Defaults.h"

#include <cstdio>
#include <string>

namespace tarnwick::sim {

class SimDispatch;

// Everything the program did that a user could see or that reached the
// platform, one `TIME WORD PAYLOAD` line each.
class Transcript {
  public:
    explicit Transcript(SimDispatch& dispatch, std::FILE* echo = nullptr)
        : dispatch_(dispatch)
        , echo_(echo) {}

    // Dropped once the program has ended itself: on the real platform the
    // rest of the work under way never runs.
    void line(const std::string& word, const std::string& payload);
    const std::string& text() const { return text_; }
    static std::string time(int64_t micros);

  private:
    SimDispatch& dispatch_;
    std::FILE* echo_;
    std::string text_;
};

// Payload forms shared by the ports and the runner.
std::string formatRect(const Rect& r); // X,Y,W,H in shortest numbers
// Compact JSON; binary data as data:"TEXT".
std::string formatDefaultsValue(const DefaultsValue& v);
// A word as it is when it reads back unambiguously, otherwise a JSON string.
std::string bareOrQuoted(const std::string& s);

} // namespace tarnwick::sim
