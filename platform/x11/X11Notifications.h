#pragma once

#include "platform/x11/X11Screens.h"
#include "platform/x11/XConnection.h"
#include "ports/Notifications.h"
#include "ports/SystemLog.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tarnwick::x11 {

// The main connection's event pump and the session's sleep and wake. RandR
// changes and a changed work area re-read the screens; the screen saver
// switching the screens off and on stands for the screens sleeping and
// waking; logind's PrepareForSleep on the system bus for the machine's.
//
// Every round trip on the main connection (the screens, the pointer, the
// trust check) lets libxcb read events that arrive meanwhile into its queue,
// where the socket no longer shows them: so the queue is also emptied each
// time the event loop is about to sleep. The main connection is therefore
// the main thread's alone.
class X11Notifications : public QObject, public Notifications {
    Q_OBJECT
  public:
    X11Notifications(XConnection& x, X11Screens& screens, SystemLog& log);

    void observe(PlatformEvent event, std::function<void()> handler) override;
    // Called when the connection to the X server is lost: the program ends.
    std::function<void()> onConnectionLost;

  private slots:
    void prepareForSleep(bool sleeping);

  private:
    // Handles the events waiting on the socket (`fromSocket`) or only those
    // libxcb has already read, and again any that the handling's own round
    // trips bring in.
    void drain(bool fromSocket);
    // One event; `screens` is set when the monitors may have changed.
    void handle(const xcb_generic_event_t* event, bool& screens);
    void screensMayHaveChanged();
    void post(PlatformEvent event);
    void watchLogind();

    XConnection& x_;
    X11Screens& screens_;
    SystemLog& log_;
    std::unique_ptr<QSocketNotifier> notifier_;
    // RandR's monitor list can trail its events by up to ~100 ms: look again
    // shortly after the burst, so the settle step reads the final list.
    QTimer followUp_;
    int followUps_ = 0;
    uint8_t randrEventBase_ = 0;
    uint8_t screensaverEventBase_ = 0;
    bool screensaverKnown_ = false;
    std::map<PlatformEvent, std::vector<std::function<void()>>> handlers_;
};

} // namespace tarnwick::x11
