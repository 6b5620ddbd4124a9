#pragma once

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

    void line(const std::string& word, const std::string& payload);
    const std::string& text() const { return text_; }
    static std::string time(int64_t micros);

  private:
    SimDispatch& dispatch_;
    std::FILE* echo_;
    std::string text_;
};

} // namespace tarnwick::sim
