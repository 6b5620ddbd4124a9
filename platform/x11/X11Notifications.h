#pragma once

#include "platform/Notifications.h"
#include "platform/SystemLog.h"
#include "platform/x11/X11Screens.h"
#include "platform/x11/XConnection.h"

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
    void drain();
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
