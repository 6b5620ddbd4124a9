#include "platform/sim/SimScreens.h"

#include <algorithm>

namespace tarnwick::sim {

std::vector<ScreenInfo> SimScreens::screens() {
    std::vector<ScreenInfo> out;
    for (const auto& s : w_.screens) {
        ScreenInfo info;
        if (!s.noid) info.number = s.id;
        info.name = s.name;
        info.frame = s.frame;
        info.visibleFrame = s.visible;
        if (s.notch) {
            info.safeAreaTop = s.notch->h;
            const double side = (s.frame.w - s.notch->w) / 2;
            const double y = s.frame.maxY() - s.notch->h;
            info.auxiliaryTopLeft = Rect{s.frame.x, y, side, s.notch->h};
            info.auxiliaryTopRight = Rect{s.frame.x + side + s.notch->w, y, side, s.notch->h};
        }
        out.push_back(std::move(info));
    }
    return out;
}

bool SimScreens::isBuiltin(uint32_t displayId) {
    return std::any_of(w_.screens.begin(), w_.screens.end(),
                       [&](const SimWorld::Screen& s) { return s.id == displayId && s.builtin; });
}

std::optional<std::vector<uint32_t>> SimScreens::activeDisplayList() {
    std::vector<uint32_t> ids;
    for (const auto& s : w_.screens)
        ids.push_back(s.id);
    return ids;
}

Point SimScreens::mouseLocation() {
    w_.dispatch.requireMain("Screens::mouseLocation");
    if (w_.mouse) return *w_.mouse;
    if (w_.screens.empty()) return {};
    const Rect& f = w_.screens.front().frame;
    return {f.x + f.w / 2, f.y + f.h / 2};
}

std::optional<size_t> SimScreens::mainScreen() {
    w_.dispatch.requireMain("Screens::mainScreen");
    if (w_.screens.empty()) return std::nullopt;
    return 0;
}

} // namespace tarnwick::sim
