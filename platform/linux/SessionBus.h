#pragma once

#include "ports/SystemLog.h"

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace tarnwick::xdg {

// The program's name on the session bus: one copy at a time, and the
// freedesktop way to open it again (a second launch through its desktop
// entry calls Activate on the running copy).
class SessionBus : public QObject {
    Q_OBJECT
  public:
    static constexpr const char* serviceName = "org.tarnwick.Tarnwick";
    static constexpr const char* objectPath = "/org/tarnwick/Tarnwick";

    explicit SessionBus(SystemLog& log);

    // The process that holds our name now, if another does.
    std::optional<int32_t> otherCopy();
    // Takes the name, from another copy if need be, and lets a later copy
    // take it from us. `onActivate` answers a reopen; `onLost` runs when a
    // later copy took the name.
    void claim(std::function<void()> onActivate, std::function<void()> onLost);
    // Named commands a desktop shortcut or a script can run through
    // ActivateAction; false for a name nobody answers.
    void onAction(std::function<bool(const std::string&)> handler) {
        onAction_ = std::move(handler);
    }

    void activate();
    void action(const QString& name);

  private slots:
    void nameLost(const QString& name);

  private:
    SystemLog& log_;
    bool connected_ = false;
    std::function<void()> onActivate_, onLost_;
    std::function<bool(const std::string&)> onAction_;
};

// org.freedesktop.Application on our object.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
  public:
    explicit ApplicationAdaptor(SessionBus* bus)
        : QDBusAbstractAdaptor(bus)
        , bus_(bus) {}

  public slots:
    void Activate(const QVariantMap& platformData) {
        (void)platformData;
        bus_->activate();
    }
    void Open(const QStringList& uris, const QVariantMap& platformData) {
        (void)uris;
        (void)platformData;
        bus_->activate();
    }
    void ActivateAction(const QString& name, const QVariantList& parameter,
                        const QVariantMap& platformData) {
        (void)parameter;
        (void)platformData;
        bus_->action(name);
    }

  private:
    SessionBus* bus_;
};

} // namespace tarnwick::xdg
