#include "layouts/Layouts.h"

#include "base/JsonText.h"
#include "displays/Displays.h"

#include <openssl/evp.h>

#include <algorithm>
#include <cmath>
#include <list>
#include <set>
#include <tuple>
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
            json item{{"bundle", w.bundle},   {"title", w.title},     {"x", jsonNumber(w.x)},
                      {"y", jsonNumber(w.y)}, {"w", jsonNumber(w.w)}, {"h", jsonNumber(w.h)}};
            if (w.screen) {
                const auto& s = *w.screen;
                if (!std::isfinite(s.x) || !std::isfinite(s.y) || !std::isfinite(s.w) ||
                    !std::isfinite(s.h))
                    return std::nullopt;
                item["screen"] = {{"name", s.name},
                                  {"x", jsonNumber(s.x)},
                                  {"y", jsonNumber(s.y)},
                                  {"w", jsonNumber(s.w)},
                                  {"h", jsonNumber(s.h)}};
            }
            if (w.maximized) item["maximized"] = true;
            list.push_back(std::move(item));
        }
        doc[key] = std::move(list);
    }
    return dumpCompact(doc);
}

namespace {

// The screen a window was saved on is an addition: a store without one, or
// with one this version cannot read, still restores, as frames of the desktop.
std::optional<SavedScreen> screenOf(const json& window) {
    auto f = window.find("screen");
    if (f == window.end() || !f->is_object()) return std::nullopt;
    const auto& s = *f;
    auto name = s.find("name");
    if (name == s.end() || !name->is_string()) return std::nullopt;
    double v[4];
    const char* keys[] = {"x", "y", "w", "h"};
    for (int i = 0; i < 4; ++i) {
        auto n = s.find(keys[i]);
        if (n == s.end() || !n->is_number()) return std::nullopt;
        v[i] = n->get<double>();
        if (!std::isfinite(v[i])) return std::nullopt;
    }
    return SavedScreen{name->get<std::string>(), v[0], v[1], v[2], v[3]};
}

// Also an addition, and only ever written as true.
bool maximizedIn(const json& window) {
    auto f = window.find("maximized");
    return f != window.end() && f->is_boolean() && f->get<bool>();
}

using Placed = std::tuple<std::string, std::string, double, double, double, double>;

std::set<Placed> placedOf(const std::vector<AppWindow>& windows) {
    std::set<Placed> out;
    for (const auto& w : windows) {
        if (w.fullscreen || !w.frame.isFinite()) continue;
        out.insert({w.app ? w.app->identifier.value_or("") : std::string(),
                    Layouts::titleDigest(w.title), w.frame.x, w.frame.y, w.frame.w, w.frame.h});
    }
    return out;
}

// Whether a window known at the arrival now stands elsewhere. Windows opened
// since, or renamed, say nothing about the user's wishes for the old ones.
bool movedSince(const std::set<Placed>& seen, const std::set<Placed>& now) {
    std::set<std::pair<std::string, std::string>> known;
    for (const auto& p : seen)
        known.insert({std::get<0>(p), std::get<1>(p)});
    for (const auto& p : now)
        if (known.count({std::get<0>(p), std::get<1>(p)}) && !seen.count(p)) return true;
    return false;
}

bool sameArrangement(const std::vector<Display>& a, const std::vector<Display>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const Display& x, const Display& y) { return x.name == y.name && x.frame == y.frame; });
}

} // namespace

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
                               height->get<double>(), screenOf(w), maximizedIn(w)});
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

Layouts::SaveResult Layouts::save(Saving how) {
    uint64_t ticket;
    {
        std::lock_guard lock(mutex_);
        ticket = ++nextTicket_;
    }
    // The setup is read before the windows: a snapshot that straddles a
    // display change would file one setup's frames under the other's key.
    const auto displays = Displays::all(screens_);
    SaveResult result;
    std::vector<SavedWindow> saved;
    const auto windows = mover_.windows();
    for (const auto& w : windows) {
        if (w.fullscreen) continue;
        // An application may report any frame; one that is not a number
        // could neither be stored nor put back, and must not cost the others.
        if (!w.frame.isFinite()) {
            ++result.leftOut;
            continue;
        }
        std::optional<SavedScreen> screen;
        if (auto d = Displays::containing(w.frame, displays))
            screen = SavedScreen{Displays::configKey({*d}), d->frame.x, d->frame.y, d->frame.w,
                                 d->frame.h};
        saved.push_back({w.app->identifier.value_or(""), titleDigest(w.title), w.frame.x, w.frame.y,
                         w.frame.w, w.frame.h, std::move(screen), w.maximized});
    }
    // No platform call below may block the virtual clock's threads: the lock
    // is held only over reads and one write.
    std::lock_guard lock(mutex_);
    if (!sameArrangement(displays, Displays::all(screens_))) {
        result.stored = false;
        result.setupChanged = true;
        return result;
    }
    const auto key = Displays::configKey(displays);
    if (how == Saving::periodic && hold_ && hold_->key == key) {
        if (!hold_->seen || !movedSince(*hold_->seen, placedOf(windows))) {
            result.stored = false;
            result.held = true;
            return result;
        }
        hold_.reset(); // the user has arranged this setup anew
    }
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
    if (setupChanged)
        lines.push_back("Layout not saved: the displays changed while windows were listed");
    else if (!stored && !held)
        lines.push_back("Layout not saved: the layouts could not be written as JSON");
    return lines;
}

uint64_t Layouts::arrived(const std::string& key) {
    std::lock_guard lock(mutex_);
    if (!load().count(key)) {
        hold_.reset();
        return 0;
    }
    hold_ = Hold{++arrivals_, key, std::nullopt};
    return hold_->arrival;
}

void Layouts::arrivedWith(uint64_t arrival, const std::vector<AppWindow>& windows) {
    auto seen = placedOf(windows); // digests outside the lock
    std::lock_guard lock(mutex_);
    if (hold_ && hold_->arrival == arrival) hold_->seen = std::move(seen);
}

RestoreResult Layouts::restore(const std::vector<AppWindow>& windows) {
    const auto displays = Displays::all(screens_);
    const auto key = Displays::configKey(displays);
    auto store = load();
    auto entry = store.find(key);
    if (entry == store.end()) return {0, windows};
    {
        std::lock_guard lock(mutex_);
        if (hold_ && hold_->key == key) hold_.reset(); // put back: snapshots may follow it again
    }

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
    auto& port = mover_.access();
    std::vector<Placing> batch;
    auto flush = [&] {
        if (!batch.empty()) port.placeAll(batch);
        batch.clear();
    };
    auto apply = [&](const AppWindow& w, const SavedWindow& s) {
        Rect f{s.x, s.y, s.w, s.h};
        // Relative to the display it was saved on, wherever that display
        // stands now: another primary or a monitor moved to the other side
        // moves the desktop's origin, not the windows on the monitor.
        if (s.screen)
            for (const auto& d : displays)
                if (Displays::configKey({d}) == s.screen->name) {
                    f.x += d.frame.x - s.screen->x;
                    f.y += d.frame.y - s.screen->y;
                    break;
                }
        if (!placeable(f)) {
            result.unmatched.push_back(w);
            return;
        }
        ++result.restored;
        if (!w.maximized && !s.maximized) {
            batch.push_back({w.ref, f});
            return;
        }
        // A maximized window ignores a new frame; one that was saved
        // maximized is maximized again on the display its frame now covers.
        // The frames before it go first, so that every window is written
        // in the order it was matched.
        flush();
        if (w.maximized) port.setMaximized(w.ref, false);
        port.place(w.ref, f);
        if (s.maximized) port.setMaximized(w.ref, true);
    };
    auto bundleOf = [](const AppWindow& w) {
        return w.app ? w.app->identifier.value_or("") : std::string();
    };

    std::vector<const AppWindow*> leftovers;
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
    for (const AppWindow* w : leftovers) {
        auto records = byBundle.find(bundleOf(*w));
        if (records == byBundle.end() || records->second.empty()) {
            result.unmatched.push_back(*w);
            continue;
        }
        const SavedWindow* s = records->second.front();
        records->second.pop_front();
        apply(*w, *s);
    }
    flush();
    return result;
}

} // namespace tarnwick
