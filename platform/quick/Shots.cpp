#include "platform/quick/Shots.h"

#include "platform/quick/IslandBridge.h"
#include "platform/quick/SettingsBridge.h"
#include "platform/quick/SetupBridge.h"
#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimScreens.h"
#include "platform/sim/SimSurfaces.h"

#include <QDir>
#include <QImage>

namespace tarnwick::quick {

std::vector<std::string> shoot(sim::SimDesktop& desktop, const std::string& dir,
                               const std::string& name, std::string& error) {
    auto& surfaces = desktop.surfaces();
    std::vector<std::pair<std::string, QImage>> pictures;
    if (auto* panel = surfaces.panel(); panel && panel->shown()) {
        Measure measure = [&](const std::string& text, double size, FontWeight weight) {
            return surfaces.textWidth(text, size, weight);
        };
        pictures.emplace_back(
            "island", shootIsland(panel->model(), measure, desktop.screens().builtinWords()));
    }
    if (auto* w = surfaces.window(WindowKind::settings); w && w->visible())
        if (auto m = std::dynamic_pointer_cast<SettingsView>(w->model()))
            pictures.emplace_back("settings", shootSettings(m));
    if (auto* w = surfaces.window(WindowKind::setup); w && w->visible())
        if (auto m = std::dynamic_pointer_cast<SetupView>(w->model()))
            pictures.emplace_back("setup", shootSetup(m));

    std::vector<std::string> written;
    QDir().mkpath(QString::fromStdString(dir));
    for (const auto& [surface, image] : pictures) {
        const auto file = dir + "/" + name + "-" + surface + ".png";
        if (image.isNull() || !image.save(QString::fromStdString(file), "PNG")) {
            error += (error.empty() ? "" : "; ") + std::string("cannot render ") + file;
            continue;
        }
        written.push_back(file);
    }
    return written;
}

} // namespace tarnwick::quick
