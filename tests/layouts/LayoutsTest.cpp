#include "layouts/Layouts.h"

#include "platform/sim/SimEngine.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tarnwick;
using tarnwick::sim::SimDesktop;
using tarnwick::sim::SimDispatch;
using tarnwick::sim::Transcript;

namespace {

struct World : tarnwick::sim::SimEngine {
    std::string key;

    World() {
        desk.addScreen({1, "Built-in", {0, 0, 1440, 900}, {0, 0, 1440, 875}, true});
        desk.addScreen({2, "Desk", {1440, -540, 2560, 1440}, {1440, -540, 2560, 1415}});
        key = Displays::configKey(Displays::all(desk));
        desk.addApp({10, "Notes", "com.example.notes"});
        desk.addApp({11, "Mail", "com.example.mail"});
    }
    void window(int32_t pid, const std::string& title, Rect frame, bool fullscreen = false) {
        desk.addWindow({.pid = pid, .title = title, .frame = frame, .fullscreen = fullscreen},
                       false, false);
    }
    void store(const LayoutStore& s) {
        auto text = *Layouts::encode(s);
        desk.storeUserDefault(Layouts::storeKey, DefaultsValue::binary({text.begin(), text.end()}));
    }
    std::string stored() const {
        const auto& bytes = desk.userDefaults().at(Layouts::storeKey).get_binary();
        return {bytes.begin(), bytes.end()};
    }
    // The engine's work, on the background thread the core gives it.
    void save() {
        offMain([&] { layouts.save(); });
    }
    std::vector<AppWindow> windows() {
        std::vector<AppWindow> list;
        offMain([&] { list = mover.windows(); });
        return list;
    }
    RestoreResult restore(const std::vector<AppWindow>& list) {
        RestoreResult r;
        offMain([&] { r = layouts.restore(list); });
        return r;
    }
    Rect frameOf(int32_t pid, const std::string& title) {
        return desk.findWindow(pid, title)->frame;
    }
};

SavedWindow saved(const std::string& bundle, const std::string& title, Rect f,
                  std::optional<SavedScreen> screen = std::nullopt) {
    return {bundle, Layouts::titleDigest(title), f.x, f.y, f.w, f.h, std::move(screen)};
}

const SavedScreen builtin{"Built-in@1440x900", 0, 0, 1440, 900};
const SavedScreen desk{"Desk@2560x1440", 1440, 0, 2560, 1440};

std::vector<std::string> titles(const std::vector<AppWindow>& list) {
    std::vector<std::string> out;
    for (const auto& w : list)
        out.push_back(w.title);
    return out;
}

} // namespace

TEST(Layouts, TitleDigest) {
    EXPECT_EQ(Layouts::titleDigest(""),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(Layouts::titleDigest("abc"),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_NE(Layouts::titleDigest("Notes"), Layouts::titleDigest("notes"));
}

TEST(Layouts, EncodeAndDecode) {
    const LayoutStore store{
        {"Built-in@1440x900 + Desk@2560x1440", {{"com.a", "t", 1715, 321, 800, 601.5}}},
        {"X@1x1", {}},
    };
    const auto text = Layouts::encode(store);
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, R"({"Built-in@1440x900 + Desk@2560x1440":[{"bundle":"com.a","h":601.5,)"
                     R"("title":"t","w":800,"x":1715,"y":321}],"X@1x1":[]})");
    EXPECT_EQ(Layouts::decode(*text), store);

    for (double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        EXPECT_FALSE(Layouts::encode({{"k", {{"b", "t", 0, 0, 0, 0}, {"b", "t", 0, bad, 1, 1}}}}));
        EXPECT_FALSE(Layouts::encode({{"k", {{"b", "t", 0, 0, 0, bad}}}}));
    }

    // Decoding wants every field, with its type; other fields are let be.
    const std::string good = R"("bundle":"b","title":"t","x":1,"y":2.5,"w":3,"h":4)";
    EXPECT_EQ(Layouts::decode("{\"k\":[{" + good + ",\"extra\":[true]}]}"),
              (LayoutStore{{"k", {{"b", "t", 1, 2.5, 3, 4}}}}));
    EXPECT_EQ(Layouts::decode("{}"), LayoutStore{});
    for (const std::string& bad : std::vector<std::string>{
             R"({"k":[{"bundle":"b","title":"t","x":1,"y":2,"w":3}]})",
             R"({"k":[{"bundle":"b","title":"t","x":1,"y":2,"w":3,"h":"4"}]})",
             R"({"k":[{"bundle":null,"title":"t","x":1,"y":2,"w":3,"h":4}]})",
             R"({"k":[{"bundle":"b","title":7,"x":1,"y":2,"w":3,"h":4}]})",
             R"({"k":[{)" + good + R"(}, 1]})",
             R"({"k":{}})",
             R"([])",
             R"({"k":[)",
             "",
         })
        EXPECT_FALSE(Layouts::decode(bad)) << bad;
}

// Each window keeps the display it stood on and whether it was maximized,
// additions older stores lack and older versions let be; one this version
// cannot read is as if absent.
TEST(Layouts, TheSavedScreenAndStateAreOptionalFields) {
    LayoutStore store{{"k", {saved("b", "t", {1, 2, 3, 4}, desk), saved("b", "u", {})}}};
    store["k"][0].maximized = true;
    const auto text = Layouts::encode(store);
    ASSERT_TRUE(text);
    EXPECT_NE(text->find(R"("screen":{"h":1440,"name":"Desk@2560x1440","w":2560,"x":1440,"y":0})"),
              std::string::npos)
        << *text;
    const auto maximized = text->find(R"("maximized":true)");
    EXPECT_TRUE(maximized != std::string::npos && maximized == text->rfind(R"("maximized")"))
        << *text;
    EXPECT_EQ(Layouts::decode(*text), store);
    for (std::string state : {R"("maximized":1)", R"("maximized":"yes")"})
        EXPECT_FALSE(Layouts::decode(R"({"k":[{"bundle":"b","title":"t","x":1,"y":2,"w":3,"h":4,)" +
                                     state + "}]}")
                         ->at("k")[0]
                         .maximized);

    const std::string plain = R"("bundle":"b","title":"t","x":1,"y":2,"w":3,"h":4)";
    for (const std::string& screen :
         {std::string(R"(,"screen":[1])"), std::string(R"(,"screen":{"x":1,"y":2,"w":3,"h":4})"),
          std::string(R"(,"screen":{"name":"D","x":1,"y":2,"w":3})"),
          std::string(R"(,"screen":{"name":"D","x":1,"y":2,"w":3,"h":"4"})")})
        EXPECT_EQ(Layouts::decode("{\"k\":[{" + plain + screen + "}]}"),
                  (LayoutStore{{"k", {{"b", "t", 1, 2, 3, 4}}}}))
            << screen;
    EXPECT_FALSE(Layouts::encode(
        {{"k",
          {saved("b", "t", {}, SavedScreen{"D", std::numeric_limits<double>::quiet_NaN()})}}}));
}

// The same monitors in another arrangement give the same setup key: a window
// comes back to its place on the monitor it was saved on, wherever that
// monitor now stands, while frames from an older store are taken as they are.
TEST(Layouts, RestoreFollowsTheMonitorItWasSavedOn) {
    World w; // saved with the panel at the origin and the desk to its right
    w.window(10, "OnDesk", {0, 25, 300, 300});
    w.window(10, "OnPanel", {0, 25, 300, 300});
    w.window(11, "Old", {0, 25, 300, 300});
    w.window(11, "Across", {0, 25, 300, 300});
    w.store({{w.key,
              {saved("com.example.notes", "OnDesk", {1500, 100, 800, 600}, desk),
               saved("com.example.notes", "OnPanel", {50, 60, 700, 500}, builtin),
               saved("com.example.mail", "Old", {1600, 200, 500, 400}),
               // Saved across both, mostly on the desk: it follows the desk.
               saved("com.example.mail", "Across", {1340, 300, 600, 400}, desk)}}});
    // The desk becomes primary with the panel on its left, lower down.
    w.desk.unplug(1);
    w.desk.addScreen({2, "Desk", {0, 0, 2560, 1440}, {0, 0, 2560, 1415}});
    w.desk.addScreen({1, "Built-in", {-1440, 0, 1440, 900}, {-1440, 0, 1440, 875}, true});
    ASSERT_EQ(Displays::configKey(Displays::all(w.desk)), w.key);

    auto r = w.restore(w.windows());
    EXPECT_EQ(r.restored, 4);
    EXPECT_EQ(w.frameOf(10, "OnDesk"), (Rect{60, 100, 800, 600}));
    EXPECT_EQ(w.frameOf(10, "OnPanel"), (Rect{-1390, 600, 700, 500}));
    EXPECT_EQ(w.frameOf(11, "Old"), (Rect{1600, 200, 500, 400}));
    EXPECT_EQ(w.frameOf(11, "Across"), (Rect{-100, 300, 600, 400}));
}

TEST(Layouts, SaveReplacesTheCurrentSetupOnly) {
    World w;
    EXPECT_TRUE(w.layouts.load().empty());
    w.window(10, "Groceries", {100, 125, 800, 600});
    w.window(10, "Movie", {0, 0, 1440, 900}, true);
    w.window(11, "Inbox", {1600, 100, 800, 600});
    const std::vector<SavedWindow> old{saved("com.x", "Old", {1, 2, 3, 4})};
    w.store({{"Old@1x1", old}});

    w.save();
    const std::vector<SavedWindow> first{
        saved("com.example.notes", "Groceries", {100, 125, 800, 600}, builtin),
        saved("com.example.mail", "Inbox", {1600, 100, 800, 600}, desk)};
    EXPECT_EQ(w.layouts.load(), (LayoutStore{{"Old@1x1", old}, {w.key, first}}));

    w.desk.moveByHand(*w.desk.findWindow(10, "Groceries"), {10.5, 30, 700, 500});
    w.desk.closeWindow(*w.desk.findWindow(11, "Inbox"));
    w.save();
    EXPECT_EQ(
        w.layouts.load(),
        (LayoutStore{
            {"Old@1x1", old},
            {w.key, {saved("com.example.notes", "Groceries", {10.5, 30, 700, 500}, builtin)}}}));

    // A frame that is not a number is left out; the rest of the snapshot is
    // stored all the same, and the log says what was left out.
    const auto before = w.layouts.load();
    const double inf = std::numeric_limits<double>::infinity();
    w.window(11, "Broken", {inf, 0, 800, 600});
    w.window(11, "Torn", {0, 0, std::nan(""), 600});
    Layouts::SaveResult result;
    w.offMain([&] { result = w.layouts.save(); });
    EXPECT_EQ(w.layouts.load(), before);
    EXPECT_TRUE(result.stored);
    EXPECT_EQ(result.leftOut, 2);
    EXPECT_EQ(result.logLines(), std::vector<std::string>{
                                     "Layout saved without 2 windows whose frame is not a number"});
}

TEST(Layouts, RestoreUsesEachRecordOnceAndReportsTheRest) {
    World w;
    const Rect fx{200, 200, 500, 400}, fz{1500, 100, 600, 500}, away{-9000, 0, 100, 100};
    w.store({{w.key,
              {saved("com.example.notes", "X", fx), saved("com.example.notes", "Y", away),
               saved("com.example.notes", "Z", fz), saved("com.example.mail", "Y", fz)}},
             {"Elsewhere@1x1", {saved("com.example.mail", "Inbox", fx)}}});
    const Rect start{0, 25, 300, 300};
    w.window(10, "Y", start);       // its record is off-screen: stays, and uses the record up
    w.window(10, "X", start, true); // full screen: never restored, its record stays free
    w.window(11, "Inbox", start);   // no record of its own title
    w.window(10, "Q", start);       // takes X's record
    w.window(10, "R", start);       // takes Z's
    w.window(10, "S", start);       // nothing left
    auto list = w.windows();
    // Listed by application: put them back in the order above.
    std::vector<AppWindow> input;
    for (auto t : {"Y", "X", "Inbox", "Q", "R", "S"})
        for (const auto& x : list)
            if (x.title == t) input.push_back(x);

    auto r = w.restore(input);
    EXPECT_EQ(r.restored, 3);
    EXPECT_EQ(titles(r.unmatched), (std::vector<std::string>{"Y", "X", "S"}));
    EXPECT_EQ(w.frameOf(10, "Y"), start);
    EXPECT_EQ(w.frameOf(11, "Inbox"), fz);
    EXPECT_EQ(w.frameOf(10, "Q"), fx);
    EXPECT_EQ(w.frameOf(10, "R"), fz);
    EXPECT_EQ(w.frameOf(10, "S"), start);
    // Restoring never writes the store.
    EXPECT_EQ(w.transcript.text().find("defaults"), std::string::npos);
}

TEST(Layouts, ASavedFrameNoWindowCouldHaveIsNotPutBack) {
    World w; // 1440x900 beside 2560x1440: the desktop is 4000 x 1440
    const std::vector<std::pair<const char*, Rect>> frames{
        {"A", {0, 25, 0.5, 600}},  {"B", {0, 25, 800, -600}},  {"C", {-1e300, 25, 2e300, 600}},
        {"D", {0, 25, 4001, 600}}, {"E", {0, 25, 800, 1e300}}, {"F", {0, 0, 4000, 1440}},
    };
    std::vector<SavedWindow> records;
    for (const auto& [title, frame] : frames) {
        w.window(10, title, {100, 125, 300, 300});
        records.push_back(saved("com.example.notes", title, frame));
    }
    w.store({{w.key, records}});
    auto r = w.restore(w.windows());
    EXPECT_EQ(r.restored, 1);
    EXPECT_EQ(titles(r.unmatched), (std::vector<std::string>{"A", "B", "C", "D", "E"}));
    EXPECT_EQ(w.frameOf(10, "F"), (Rect{0, 0, 4000, 1440}));
    EXPECT_EQ(w.frameOf(10, "C"), (Rect{100, 125, 300, 300}));
}

TEST(Layouts, RestoreWithoutAUsableEntry) {
    for (bool emptyEntry : {false, true}) {
        World w;
        LayoutStore store{{"Elsewhere@1x1", {saved("com.example.notes", "N1", {0, 25, 9, 9})}}};
        if (emptyEntry) store[w.key] = {};
        w.store(store);
        w.window(10, "N1", {0, 25, 300, 300});
        w.window(10, "F1", {0, 0, 1440, 900}, true);
        w.window(10, "N2", {0, 25, 300, 300});
        w.window(11, "F2", {1440, 0, 2560, 1440}, true);
        auto input = w.windows();
        auto r = w.restore(input);
        EXPECT_EQ(r.restored, 0);
        if (emptyEntry) {
            EXPECT_EQ(titles(r.unmatched), (std::vector<std::string>{"F1", "F2", "N1", "N2"}));
        } else {
            ASSERT_EQ(titles(r.unmatched), titles(input));
            for (size_t i = 0; i < input.size(); ++i)
                EXPECT_EQ(r.unmatched[i].ref, input[i].ref);
        }
        EXPECT_EQ(w.transcript.text().find("frame"), std::string::npos);
    }
}

// The periodic snapshot and the command can overlap. Here the snapshot that
// started first is held up by an application that does not answer and
// finishes last: it must not overwrite the newer snapshot, nor drop the
// layout of another setup.
TEST(Layouts, OverlappingSavesKeepTheNewestSnapshot) {
    World w;
    w.store({{"Other@1x1", {saved("com.example.notes", "Old", {1, 2, 3, 4})}}});
    w.window(10, "Draft", {100, 100, 400, 300});
    w.desk.addApp({12, "Frozen", "com.example.frozen", AppKind::regular, true});
    w.window(12, "Busy", {200, 200, 400, 300});
    w.window(12, "Stuck", {300, 300, 400, 300});

    w.dispatch.background(QoS::utility, [&] { w.layouts.save(); });
    w.dispatch.runUntil(SimDispatch::micros(0.2));
    w.desk.moveByHand(*w.desk.findWindow(10, "Draft"), {1500, 100, 400, 300});
    w.desk.quitApp(12);
    w.dispatch.background(QoS::userInitiated, [&] { w.layouts.save(); });
    w.dispatch.runUntil(SimDispatch::micros(5));

    auto store = w.layouts.load();
    ASSERT_EQ(store.count("Other@1x1"), 1u);
    ASSERT_EQ(store[w.key].size(), 1u);
    EXPECT_EQ(store[w.key][0].x, 1500);
}
