#include "platform/sim/SimWindowAccess.h"

#include "base/JsonText.h"

namespace tarnwick::sim {

using namespace tarnwick::ax;

namespace {

constexpr double defaultMessagingTimeout = 6.0;

std::string windowRef(const SimWorld::Window& w) {
    return std::to_string(w.pid) + " " + tarnwick::quoted(w.title);
}

} // namespace

struct SimWindowAccess::Element : AXElementObject {
    int32_t pid = 0;
    uint64_t window = 0; // 0: the application element
    double timeout = defaultMessagingTimeout;
    std::optional<Size> writtenSize;
};

std::optional<std::vector<WindowListEntry>> SimWindowAccess::windowList() {
    w_.dispatch.requireBackground("WindowAccess::windowList");
    std::vector<WindowListEntry> out;
    for (auto& [uid, w] : w_.windows) {
        if (w.unlisted) continue;
        w_.settle(w);
        out.push_back({w.pid, w.layer, w.listed.value_or(Size{w.frame.w, w.frame.h}), w.number});
    }
    return out;
}

AXElement SimWindowAccess::createApplication(int32_t pid) {
    w_.dispatch.requireBackground("WindowAccess::createApplication");
    auto el = std::make_shared<Element>();
    el->pid = pid;
    return el;
}

AXError SimWindowAccess::setMessagingTimeout(const AXElement& element, double seconds) {
    w_.dispatch.requireBackground("WindowAccess::setMessagingTimeout");
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el || seconds < 0) return axIllegalArgument;
    el->timeout = seconds == 0 ? defaultMessagingTimeout : seconds;
    return axSuccess;
}

AXError SimWindowAccess::copyAttribute(const AXElement& element, const std::string& name,
                                       AXAttribute& value) {
    w_.dispatch.requireBackground("WindowAccess::copyAttribute");
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el) return axIllegalArgument;
    SimWorld::App* a = w_.app(el->pid);
    if (!a) return axInvalidUIElement;
    if (a->slow) {
        w_.dispatch.sleep(el->timeout);
        return axCannotComplete;
    }
    if (!el->window) {
        if (name != "AXWindows") return axAttributeUnsupported;
        std::vector<AXElement> list;
        for (auto& [uid, w] : w_.windows) {
            if (w.pid != el->pid) continue;
            auto child = std::make_shared<Element>();
            child->pid = w.pid;
            child->window = uid;
            list.push_back(child);
        }
        value = std::move(list);
        return axSuccess;
    }
    SimWorld::Window* w = w_.window(el->window);
    if (!w) return axInvalidUIElement;
    w_.settle(*w);
    if (name == "AXSubrole") {
        if (!w->subrole) return axNoValue;
        value = *w->subrole;
    } else if (name == "AXMinimized") {
        value = w->minimized;
    } else if (name == "AXPosition") {
        value = AXValue{AXValueType::point, w->frame.x, w->frame.y};
    } else if (name == "AXSize") {
        value = AXValue{AXValueType::size, w->frame.w, w->frame.h};
    } else if (name == "AXTitle") {
        if (w->notitle) return axNoValue;
        value = w->title;
    } else if (name == "AXFullScreen") {
        value = w->fullscreen;
    } else {
        return axAttributeUnsupported;
    }
    return axSuccess;
}

AXError SimWindowAccess::setAttribute(const AXElement& element, const std::string& name,
                                      const AXAttribute& value) {
    w_.dispatch.requireBackground("WindowAccess::setAttribute");
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el) return axIllegalArgument;
    SimWorld::App* a = w_.app(el->pid);
    if (!a) return axInvalidUIElement;
    SimWorld::Window* w = el->window ? w_.window(el->window) : nullptr;
    if (!w) return el->window ? axInvalidUIElement : axAttributeUnsupported;
    w_.settle(*w);

    if (name == "AXSize" || name == "AXPosition") {
        auto* v = std::get_if<AXValue>(&value);
        const auto wanted = name == "AXSize" ? AXValueType::size : AXValueType::point;
        if (!v || v->type != wanted) return axIllegalArgument;
        // One line per frame write: at its position, with the size written just before.
        if (name == "AXSize") {
            el->writtenSize = Size{v->a, v->b};
        } else {
            Size size = el->writtenSize.value_or(Size{w->frame.w, w->frame.h});
            w_.transcript.line("frame",
                               windowRef(*w) + " " + formatRect({v->a, v->b, size.w, size.h}));
        }
        if (a->slow) {
            w_.dispatch.sleep(el->timeout);
            return axCannotComplete;
        }
        w = w_.window(el->window); // the sleep may have let the window go
        if (!w) return axInvalidUIElement;
        if (w->fullscreen) return axCannotComplete; // a full-screen window keeps its frame
        if (name == "AXSize")
            w->frame.w = v->a, w->frame.h = v->b;
        else
            w->frame.x = v->a, w->frame.y = v->b;
        w->windowed = w->frame;
        return axSuccess;
    }
    if (name == "AXFullScreen") {
        auto* on = std::get_if<bool>(&value);
        if (!on) return axIllegalArgument;
        w_.transcript.line("fullscreen", windowRef(*w) + (*on ? " on" : " off"));
        if (a->slow) {
            w_.dispatch.sleep(el->timeout);
            return axCannotComplete;
        }
        const auto delay = *on ? w->enter : w->leave;
        if (*on == w->fullscreen || !delay) {
            w->pendingState.reset();
        } else {
            w->pendingState = *on;
            w->pendingAt = w_.dispatch.nowMicros() + SimDispatch::micros(*delay);
        }
        return axSuccess;
    }
    return axAttributeUnsupported;
}

AXElement SimWindowAccess::createWithRemoteToken(const RemoteToken& token) {
    w_.dispatch.requireBackground("WindowAccess::createWithRemoteToken");
    auto readLE = [&](size_t at, size_t width) {
        uint64_t v = 0;
        for (size_t i = 0; i < width; ++i)
            v |= static_cast<uint64_t>(token[at + i]) << (8 * i);
        return v;
    };
    if (readLE(8, 4) != 0x636F636F || readLE(4, 4) != 0) return nullptr;
    const auto pid = static_cast<int32_t>(readLE(0, 4));
    const uint64_t elementId = readLE(12, 8);
    if (!w_.app(pid)) return nullptr;
    for (auto& [uid, w] : w_.windows)
        if (w.pid == pid && w.element == elementId) {
            auto el = std::make_shared<Element>();
            el->pid = pid;
            el->window = uid;
            return el;
        }
    return nullptr;
}

AXError SimWindowAccess::getWindow(const AXElement& element, uint32_t& windowNumber) {
    w_.dispatch.requireBackground("WindowAccess::getWindow");
    auto* el = dynamic_cast<Element*>(element.get());
    if (!el || !el->window) return axIllegalArgument;
    SimWorld::Window* w = w_.window(el->window);
    if (!w) return axInvalidUIElement;
    windowNumber = static_cast<uint32_t>(w->number);
    return axSuccess;
}

} // namespace tarnwick::sim
