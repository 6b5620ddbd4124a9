#include "platform/x11/X11Notifications.h"

#include <QAbstractEventDispatcher>
#include <QDBusConnection>

#include <xcb/screensaver.h>

namespace tarnwick::x11 {

X11Notifications::X11Notifications(XConnection& x, X11Screens& screens, SystemLog& log)
    : x_(x)
    , screens_(screens)
    , log_(log) {
    auto* c = x.get();
    if (const auto* randr = xcb_get_extension_data(c, &xcb_randr_id); randr && randr->present) {
        randrEventBase_ = randr->first_event;
        xcb_randr_select_input(c, x.root(),
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    }
    if (const auto* ss = xcb_get_extension_data(c, &xcb_screensaver_id); ss && ss->present) {
        screensaverEventBase_ = ss->first_event;
        screensaverKnown_ = true;
        xcb_screensaver_select_input(c, x.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    }
    // The work area changes when a dock appears, goes or changes its struts.
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(c, x.root(), XCB_CW_EVENT_MASK, &mask);
    xcb_flush(c);

    followUp_.setSingleShot(true);
    followUp_.setTimerType(Qt::PreciseTimer);
    connect(&followUp_, &QTimer::timeout, this, [this] {
        screensMayHaveChanged();
        if (++followUps_ < 3) followUp_.start(150);
    });
    notifier_ =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(c), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { drain(true); });
    // Whatever ran in this turn of the loop may have waited for a reply while
    // a RandR event came in: the socket is quiet, the event sits in libxcb's
    // queue. Emptying the queue costs no system call.
    if (auto* loop = QAbstractEventDispatcher::instance())
        connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] { drain(false); });
    watchLogind();
}

void X11Notifications::observe(PlatformEvent event, std::function<void()> handler) {
    handlers_[event].push_back(std::move(handler));
}

void X11Notifications::post(PlatformEvent event) {
    // A copy: a handler may observe more while we go through the list.
    const auto list = handlers_[event];
    for (const auto& h : list)
        h();
}

void X11Notifications::screensMayHaveChanged() {
    if (screens_.refresh()) post(PlatformEvent::displaysChanged);
}

void X11Notifications::handle(const xcb_generic_event_t* e, bool& screens) {
    const uint8_t type = e->response_type & 0x7f;
    if (type == 0) {
        log_.line("X error: " + describeError(reinterpret_cast<const xcb_generic_error_t*>(e)));
    } else if (randrEventBase_ && (type == randrEventBase_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                                   type == randrEventBase_ + XCB_RANDR_NOTIFY)) {
        screens = true;
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto* p = reinterpret_cast<const xcb_property_notify_event_t*>(e);
        if (p->atom == x_.ewmh()._NET_WORKAREA) screens = true;
    } else if (screensaverKnown_ && type == screensaverEventBase_ + XCB_SCREENSAVER_NOTIFY) {
        const auto* s = reinterpret_cast<const xcb_screensaver_notify_event_t*>(e);
        if (s->state == XCB_SCREENSAVER_STATE_ON)
            post(PlatformEvent::screensOff);
        else if (s->state == XCB_SCREENSAVER_STATE_OFF)
            post(PlatformEvent::screensOn);
    }
}

void X11Notifications::drain(bool fromSocket) {
    auto* c = x_.get();
    if (!notifier_->isEnabled()) return;
    for (bool more = true; more;) {
        more = false;
        bool screens = false;
        while (auto* e = fromSocket ? xcb_poll_for_event(c) : xcb_poll_for_queued_event(c)) {
            more = true;
            handle(e, screens);
            std::free(e);
        }
        if (x_.broken()) {
            notifier_->setEnabled(false);
            log_.line("Lost the connection to the X server");
            if (onConnectionLost) onConnectionLost();
            return;
        }
        if (screens) {
            screensMayHaveChanged();
            followUps_ = 0;
            followUp_.start(150);
        }
        // The handlers' round trips may have queued more.
        fromSocket = false;
    }
}

void X11Notifications::watchLogind() {
    auto bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        log_.line("No system bus: sleep and wake of the machine go unnoticed");
        return;
    }
    if (!bus.connect("org.freedesktop.login1", "/org/freedesktop/login1",
                     "org.freedesktop.login1.Manager", "PrepareForSleep", this,
                     SLOT(prepareForSleep(bool))))
        log_.line("Cannot follow logind: sleep and wake of the machine go unnoticed");
}

void X11Notifications::prepareForSleep(bool sleeping) {
    post(sleeping ? PlatformEvent::goingToSleep : PlatformEvent::wokeUp);
}

} // namespace tarnwick::x11
