#pragma once

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace tarnwick::fuzz {

// A property that must hold for every input: when it does not, says which and
// aborts, so that libFuzzer keeps the input as a crash.
[[noreturn]] inline void broken(const std::string& what) {
    std::fprintf(stderr, "fuzz: property broken: %s\n", what.c_str());
    std::fflush(stderr);
    std::abort();
}

inline void require(bool holds, const std::string& what) {
    if (!holds) broken(what);
}

// Calls `fn` with each line of a transcript, without its line break.
template <typename F> void forEachLine(const std::string& text, F fn) {
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        fn(text.substr(start, end - start));
        start = end + 1;
    }
}

// Every line of a transcript is "SECONDS.MMM WORD …": a payload that breaks a
// line (an unescaped title, say) makes the next one unreadable.
inline void requireTranscriptLines(const std::string& text) {
    forEachLine(text, [](const std::string& line) {
        size_t i = 0;
        while (i < line.size() && line[i] >= '0' && line[i] <= '9')
            ++i;
        const bool ok = i > 0 && line.size() > i + 5 && line[i] == '.' &&
                        line.find_first_not_of("0123456789", i + 1) == i + 4 &&
                        line[i + 4] == ' ' && line[i + 5] != ' ';
        if (!ok) broken("a transcript line that does not start with a time and a word: " + line);
    });
}

// Every frame the program writes ("T frame PID "TITLE" X,Y,W,H") is one a
// window can take: four finite numbers, the size at least a point each way.
inline void requireDrawableFrames(const std::string& text) {
    forEachLine(text, [](const std::string& line) {
        const size_t word = line.find(' ');
        if (word == std::string::npos || line.compare(word, 7, " frame ") != 0) return;
        double v[4];
        char tail = 0;
        const int n = std::sscanf(line.c_str() + line.rfind(' ') + 1, "%lf,%lf,%lf,%lf%c", &v[0],
                                  &v[1], &v[2], &v[3], &tail);
        if (n != 4) broken("a frame written that is not four numbers: " + line);
        for (double x : v)
            if (!std::isfinite(x)) broken("a frame written that is not finite: " + line);
        if (!(v[2] >= 1 && v[3] >= 1)) broken("a frame written without a size: " + line);
    });
}

} // namespace tarnwick::fuzz
