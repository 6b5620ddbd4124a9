#include "layouts/Layouts.h"

#include "base/JsonText.h"
#include "displays/Displays.h"

#include <openssl/evp.h>

#include <algorithm>
#include <cmath>
#include <list>
#include <unordered_map>

namespace tarnwick {

using json = nlohmann::json;

std::string Layouts::titleDigest(const std::string& title) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_Digest(title.data(), title.size(), digest, &length, EVP_sha256(), nullptr);
    static constexpr char digits[] = "0123456789abcdef";
    std::string hex(length * 2, '0');
    for (unsigned i = 0; i < length; ++i) {
        hex[2 * i] = digits[digest[i] >> 4];
        hex[2 * i + 1] = digits[digest[i] & 0xf];
    }
    return hex;
}

std::optional<std::string> Layouts::encode(const LayoutStore& store) {
    json doc = json::object();
    for (const auto& [key, windows] : store) {
        json list = json::array();
        for (const auto& w : windows) {
            if (!std::isfinite(w.x) || !std::isfinite(w.y) || !std::isfinite(w.w) ||
                !std::isfinite(w.h))
                return std::nullopt;
            list.push_back({{"bundle", w.bundle},
                            {"title", w.title},
                            {"x", jsonNumber(w.x)},
                            {"y", jsonNumber(w.y)},
                            {"w", jsonNumber(w.w)},
                            {"h", jsonNumber(w.h)}});
        }
        doc[key] = std::move(list);
    }
    return dumpCompact(doc);
}

std::optional<LayoutStore> Layouts::decode(const std::string& text) {
    json doc = json::parse(text, nullptr, false);
    if (doc.is_discarded() || !doc.is_object()) return std::nullopt;
    LayoutStore store;
    for (auto it = doc.begin(); it != doc.end(); ++it) {
        if (!it.value().is_array()) return std::nullopt;
        auto& windows = store[it.key()];
        for (const auto& w : it.value()) {
            if (!w.is_object()) return std::nullopt;
            auto str = [&](const char* k) -> const json* {
                auto f = w.find(k);
                return f != w.end() && f->is_string() ? &*f : nullptr;
            };
            auto num = [&](const char* k) -> const json* {
                auto f = w.find(k);
                return f != w.end() && f->is_number() ? &*f : nullptr;
            };
            auto *bundle = str("bundle"), *title = str("title");
            auto *x = num("x"), *y = num("y"), *width = num("w"), *height = num("h");
            if (!bundle || !title || !x || !y || !width || !height) return std::nullopt;
            windows.push_back({bundle->get<std::string>(), title->get<std::string>(),
                               x->get<double>(), y->get<double>(), width->get<double>(),
                               height->get<double>()});
        }
    }
    return store;
}

LayoutStore Layouts::load() {
    auto value = defaults_.object(storeKey);
    if (!value || !value->is_binary()) return {};
    const auto& bytes = value->get_binary();
    return decode(std::string(bytes.begin(), bytes.end())).value_or(LayoutStore{});
}

Layouts::SaveResult Layouts::save() {
    uint64_t ticket;
    {
        std::lock_guard lock(mutex_);
        ticket = ++nextTicket_;
    }
    SaveResult result;
    std::vector<SavedWindow> saved;
    for (const auto& w : mover_.windows()) {
        if (w.fullscreen) continue;
        // An application may report any frame; one that is not a number
        // could neither be stored nor put back, and must not cost the others.
        if (!w.frame.isFinite()) {
            ++result.leftOut;
            continue;
        }
        saved.push_back({w.app->bundleIdentifier.value_or(""), titleDigest(w.title), w.frame.x,
                         w.frame.y, w.frame.w, w.frame.h});
    }
    // No platform call below may block the virtual clock's threads: the lock
    // is held only over reads and one write.
    std::lock_guard lock(mutex_);
    const auto key = Displays::configKey(Displays::all(screens_));
    auto& written = writtenTicket_[key];
    if (written > ticket) return result; // a later snapshot of this setup is already stored
    auto store = load();
    store[key] = std::move(saved);
    auto text = encode(store);
    if (!text) {
        // Keep what is stored rather than lose other setups' layouts.
        result.stored = false;
        return result;
    }
    written = ticket;
    defaults_.set(storeKey, json::binary(std::vector<uint8_t>(text->begin(), text->end())));
    return result;
}

std::vector<std::string> Layouts::SaveResult::logLines() const {
    std::vector<std::string> lines;
    if (leftOut > 0)
        lines.push_back("Layout saved without " + std::to_string(leftOut) +
                        (leftOut == 1 ? " window" : " windows") + " whose frame is not a number");
    if (!stored) lines.push_back("Layout not saved: the layouts could not be written as JSON");
    return lines;
}

RestoreResult Layouts::restore(const std::vector<AXWindow>& windows) {
    const auto displays = Displays::all(screens_);
    const auto key = Displays::configKey(displays);
    auto store = load();
    auto entry = store.find(key);
    if (entry == store.end()) return {0, windows};

    // Each application's records, in saved order; a record is used up once it places a window.
    std::unordered_map<std::string, std::list<const SavedWindow*>> byBundle;
    for (const auto& s : entry->second)
        byBundle[s.bundle].push_back(&s);

    // The stored text may have been written by anyone: a frame smaller than a
    // point, or larger than the whole desktop, is no arrangement to put back.
    double left = 0, top = 0, right = 0, bottom = 0;
    for (const auto& d : displays) {
        left = std::min(left, d.frame.minX());
        top = std::min(top, d.frame.minY());
        right = std::max(right, d.frame.maxX());
        bottom = std::max(bottom, d.frame.maxY());
    }
    auto placeable = [&](const Rect& f) {
        return f.isFinite() && f.w >= 1 && f.h >= 1 && f.w <= right - left && f.h <= bottom - top &&
               Displays::containing(f, displays);
    };

    RestoreResult result;
    auto apply = [&](const AXWindow& w, const SavedWindow& s) {
        Rect f{s.x, s.y, s.w, s.h};
        if (!placeable(f)) {
            result.unmatched.push_back(w);
            return;
        }
        mover_.setFrame(w.el, f);
        ++result.restored;
    };
    auto bundleOf = [](const AXWindow& w) {
        return w.app ? w.app->bundleIdentifier.value_or("") : std::string();
    };

    std::vector<const AXWindow*> leftovers;
    for (const auto& w : windows) {
        if (w.fullscreen) {
            result.unmatched.push_back(w);
            continue;
        }
        auto records = byBundle.find(bundleOf(w));
        if (records == byBundle.end()) {
            leftovers.push_back(&w);
            continue;
        }
        const auto digest = titleDigest(w.title); // once per window, not per comparison
        auto& list = records->second;
        auto match = std::find_if(list.begin(), list.end(),
                                  [&](const SavedWindow* s) { return s->title == digest; });
        if (match == list.end()) {
            leftovers.push_back(&w);
            continue;
        }
        const SavedWindow* s = *match;
        list.erase(match);
        apply(w, *s);
    }
    for (const AXWindow* w : leftovers) {
        auto records = byBundle.find(bundleOf(*w));
        if (records == byBundle.end() || records->second.empty()) {
            result.unmatched.push_back(*w);
            continue;
        }
        const SavedWindow* s = records->second.front();
        records->second.pop_front();
        apply(*w, *s);
    }
    return result;
}

} // namespace tarnwick
