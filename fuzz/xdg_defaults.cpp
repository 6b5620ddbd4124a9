// The real desktop's defaults file, defaults.json, holding whatever bytes a
// crash, a hand edit or another program left: read, every key asked for, a
// value set and a key removed.
//
// Properties:
// - a file is kept where it is exactly when it is a JSON object no deeper
//   than the reader allows; any other file is moved aside unchanged;
// - every key of a kept file answers, plain values as they were written;
// - what is written parses back, and a second reader of it answers what the
//   first one held.
#include "fuzz/Check.h"
#include "platform/linux/XdgDefaults.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

using namespace tarnwick;
using tarnwick::fuzz::require;
namespace fs = std::filesystem;
using json = nlohmann::json;

// Every write waits for the disk twice; what reaches the disk after a crash
// is not what is fuzzed here, and without the waits a run is ten times faster.
extern "C" int fsync(int) {
    return 0;
}

namespace {

struct Log : SystemLog {
    std::vector<std::string> lines;
    void status(const std::string& text) override { lines.push_back(text); }
    void line(const std::string& text) override { lines.push_back(text); }
};

// One folder for the whole run, emptied before each input.
const fs::path& folder() {
    static const fs::path dir = [] {
        std::string pattern = (fs::temp_directory_path() / "tarnwick-fuzz-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) fuzz::broken("cannot make a temporary folder");
        return fs::path(pattern);
    }();
    return dir;
}

std::string contents(const fs::path& p) {
    std::ifstream in(p, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// The deepest nesting of arrays and objects, counted without a parser.
int nesting(const std::string& text) {
    int depth = 0, deepest = 0;
    bool inString = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            deepest = std::max(deepest, ++depth);
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return deepest;
}

std::vector<fs::path> asides(const fs::path& dir) {
    std::vector<fs::path> out;
    for (const auto& e : fs::directory_iterator(dir))
        if (e.path().filename().string().rfind("defaults.json.corrupt-", 0) == 0)
            out.push_back(e.path());
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto& dir = folder();
    for (const auto& e : fs::directory_iterator(dir))
        fs::remove_all(e.path());
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto file = dir / "defaults.json";
    std::ofstream(file, std::ios::binary) << bytes;

    // Whether the reader should take the file, decided without its code. The
    // JSON parser stops at a NUL byte as if the text ended there, but JSON
    // text holds none: whatever follows one is not ours to drop.
    json doc = json::parse(bytes, nullptr, false);
    const bool ours = !doc.is_discarded() && doc.is_object() &&
                      bytes.find('\0') == std::string::npos &&
                      nesting(bytes) <= XdgDefaults::maxDepth;

    Log log;
    XdgDefaults first(dir.string(), log);
    if (ours) {
        require(fs::exists(file) && contents(file) == bytes, "a readable file was not kept");
        require(asides(dir).empty(), "a readable file was moved aside");
    } else {
        const auto moved = asides(dir);
        require(!fs::exists(file), "an unreadable file was left in place");
        require(moved.size() == 1 && contents(moved[0]) == bytes,
                "an unreadable file was not moved aside unchanged");
    }

    std::set<std::string> keys{"onConnect", "placement",  "delay",           "targetDisplay",
                               "excluded",  "layouts.v2", "setup.askedLogin"};
    if (ours) {
        for (const auto& [k, v] : doc.items()) {
            keys.insert(k);
            const auto answer = first.object(k);
            require(answer.has_value(), "the stored key \"" + k + "\" does not answer");
            if (v.is_primitive()) require(*answer == v, "the stored key \"" + k + "\" changed");
        }
    }
    for (const auto& k : keys)
        (void)first.object(k);

    // A snapshot of the input itself, a plain string, and a removal.
    first.set("layouts.v2", json::binary(std::vector<uint8_t>(data, data + size)));
    std::string name = "Desk ";
    for (size_t i = 0; i < size && i < 16; ++i)
        name += static_cast<char>(' ' + data[i] % 95);
    first.set("targetDisplay", name + " \xc3\xa9");
    const std::string removed = ours && !doc.empty() ? doc.begin().key() : "onConnect";
    first.remove(removed);
    keys.erase(removed);

    require(fs::exists(file), "nothing was written");
    const auto written = contents(file);
    const json back = json::parse(written, nullptr, false);
    require(!back.is_discarded() && back.is_object(), "what was written does not parse back");
    require(!back.contains(removed), "the removed key was written");

    Log log2;
    XdgDefaults second(dir.string(), log2);
    require(asides(dir).size() == (ours ? 0u : 1u), "what was written was moved aside on reading");
    require(!second.object(removed), "the removed key reads back");
    for (const auto& k : keys)
        require(second.object(k) == first.object(k),
                "the key \"" + k + "\" reads back differently after a write");
    return 0;
}
