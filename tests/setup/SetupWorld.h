#pragma once

// A desktop for the first-run code alone: the ports it uses, each answering
// from a few fields and writing what was done to one event list.
#include "platform/sim/SimDispatch.h"
#include "setup/Setup.h"
#include "setup/SetupWindow.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::setuptest {

struct SetupWorld : Files, Processes, Workspace, Trust, LoginItems, Defaults, SystemLog, Surfaces {
    sim::SimDispatch dispatch;
    std::vector<std::string> events;

    std::string home = "/Users/me";
    std::string bundle = "/Applications/Tarnwick.app";
    std::optional<std::string> bundleId = "app.tarnwick.Tarnwick";
    std::optional<std::string> original;
    std::map<std::string, bool> writable{{"/Applications", true}};
    std::map<std::string, bool> present;
    // The next call of that operation fails with the text: mkdir, trash, copy, exec, login.
    std::map<std::string, std::string> failNext;
    std::vector<AppRef> running;
    int32_t pid = 500;
    bool trusted = true;
    int32_t probeAnswer = axSuccess;
    int probes = 0;
    bool loginEnabled = false;
    std::map<std::string, DefaultsValue> user;

    Setup::Ports setupPorts() { return {*this, *this, *this, *this, *this, *this, *this}; }
    SetupModel::Ports modelPorts() { return {dispatch, *this, *this, *this}; }
    void runFor(double seconds) {
        dispatch.runUntil(dispatch.nowMicros() + sim::SimDispatch::micros(seconds));
    }
    void addApp(int32_t appPid, std::optional<std::string> id) {
        running.push_back(std::make_shared<RunningApp>(RunningApp{appPid, std::move(id)}));
    }

    std::optional<std::string> failure(const std::string& op, const std::string& event) {
        auto it = failNext.find(op);
        if (it == failNext.end()) {
            events.push_back(event);
            return std::nullopt;
        }
        auto text = it->second;
        failNext.erase(it);
        events.push_back(event + " failed");
        return text;
    }

    // Files
    std::string homeDirectory() override { return home; }
    bool isWritable(const std::string& path) override { return writable[path]; }
    bool exists(const std::string& path) override { return present[path]; }
    std::optional<std::string> createDirectory(const std::string& path) override {
        auto f = failure("mkdir", "mkdir " + path);
        if (!f) present[path] = true;
        return f;
    }
    std::optional<std::string> trash(const std::string& path) override {
        auto f = failure("trash", "trash " + path);
        if (!f) present[path] = false;
        return f;
    }
    std::optional<std::string> copy(const std::string& from, const std::string& to) override {
        auto f = failure("copy", "copy " + from + " " + to);
        if (!f) present[to] = true;
        return f;
    }
    std::string displayName(const std::string& path) override { return path; }

    // Processes
    int32_t ownPid() override { return pid; }
    std::optional<std::string> run(const std::string& path, const std::vector<std::string>& args,
                                   bool wait) override {
        std::string e = "exec " + path;
        for (const auto& a : args)
            e += " " + a;
        return failure("exec", e + (wait ? " (wait)" : ""));
    }
    void terminate(int32_t other) override {
        events.push_back("terminate " + std::to_string(other));
    }
    void quit() override { events.push_back("quit"); }
    void open(const std::string& url) override { events.push_back("open " + url); }

    // Workspace
    std::vector<AppRef> runningApplications() override { return running; }
    std::optional<std::string> applicationLocation(const std::string&) override {
        return std::nullopt;
    }
    std::string icon(const std::string&) override { return ""; }
    std::string bundlePath() override { return bundle; }
    std::optional<std::string> bundleIdentifier() override { return bundleId; }
    std::optional<std::string> version() override { return std::nullopt; }
    std::optional<std::string> translocationOriginal(const std::string&) override {
        return original;
    }
    std::string accessibilitySettingsURL() override { return "settings:accessibility"; }

    // Trust
    bool isProcessTrusted() override { return trusted; }
    int32_t probe() override {
        ++probes;
        return probeAnswer;
    }
    void requestWithPrompt() override { events.push_back("prompt"); }

    // LoginItems
    bool enabled() override { return loginEnabled; }
    std::optional<std::string> registerApp() override {
        auto f = failure("login", "login register");
        if (!f) loginEnabled = true;
        return f;
    }
    std::optional<std::string> unregisterApp() override {
        auto f = failure("login", "login unregister");
        if (!f) loginEnabled = false;
        return f;
    }

    // Defaults
    void registerDefaults(const std::map<std::string, DefaultsValue>&) override {}
    std::optional<DefaultsValue> object(const std::string& key) override {
        auto it = user.find(key);
        if (it == user.end()) return std::nullopt;
        return it->second;
    }
    void set(const std::string& key, const DefaultsValue& v) override {
        user[key] = v;
        events.push_back("defaults " + key + " " + v.dump());
    }
    void remove(const std::string& key) override { user.erase(key); }

    // SystemLog
    void status(const std::string& text) override { events.push_back("status " + text); }
    void line(const std::string& text) override { events.push_back("log " + text); }

    // Surfaces
    struct FakeWindow : Window {
        SetupWorld& w;
        std::shared_ptr<Observable> model;
        bool shown = false;
        FakeWindow(SetupWorld& world, std::shared_ptr<Observable> m)
            : w(world)
            , model(std::move(m)) {}
        bool visible() override { return shown; }
        Size size() override { return {SetupLayout::width, 400}; }
        void moveTo(const Point&) override {}
        void centre() override { w.events.push_back("window centre"); }
        void makeKeyAndFront() override {
            shown = true;
            w.events.push_back("window front");
        }
        void close() override {
            shown = false;
            w.events.push_back("window close");
        }
    };
    std::unique_ptr<Panel> makePanel(const Rect&, std::shared_ptr<IslandModel>) override {
        return nullptr;
    }
    std::unique_ptr<Window> makeWindow(WindowKind, const std::string& title,
                                       std::shared_ptr<Observable> model) override {
        events.push_back("window new " + title);
        return std::make_unique<FakeWindow>(*this, std::move(model));
    }
    void activate() override { events.push_back("activate"); }
    double textWidth(const std::string& text, double size, FontWeight) override {
        return 0.6 * size * static_cast<double>(text.size());
    }
};

} // namespace tarnwick::setuptest
