#include "platform/linux/SessionBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <string>

namespace tarnwick::xdg {

SessionBus::SessionBus(SystemLog& log)
    : log_(log) {
    auto bus = QDBusConnection::sessionBus();
    connected_ = bus.isConnected();
    if (!connected_)
        log_.line("No session bus: other copies cannot be found and reopening is not offered");
}

std::optional<int32_t> SessionBus::otherCopy() {
    if (!connected_) return std::nullopt;
    auto* iface = QDBusConnection::sessionBus().interface();
    auto owned = iface->isServiceRegistered(serviceName);
    if (!owned.isValid() || !owned.value()) return std::nullopt;
    auto pid = iface->servicePid(serviceName);
    if (!pid.isValid()) return std::nullopt;
    return static_cast<int32_t>(pid.value());
}

void SessionBus::claim(std::function<void()> onActivate, std::function<void()> onLost) {
    onActivate_ = std::move(onActivate);
    onLost_ = std::move(onLost);
    if (!connected_) return;
    auto bus = QDBusConnection::sessionBus();
    new ApplicationAdaptor(this);
    if (!bus.registerObject(objectPath, this)) log_.line("Cannot export the application object");
    bus.connect("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameLost",
                this, SLOT(nameLost(QString)));
    auto reply = bus.interface()->registerService(serviceName,
                                                  QDBusConnectionInterface::ReplaceExistingService,
                                                  QDBusConnectionInterface::AllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered)
        log_.line(std::string("Cannot own the name ") + serviceName + " on the session bus");
}

void SessionBus::activate() {
    if (onActivate_) onActivate_();
}

void SessionBus::action(const QString& name) {
    if (!onAction_ || !onAction_(name.toStdString()))
        log_.line("No action named \"" + name.toStdString() + "\"");
}

void SessionBus::nameLost(const QString& name) {
    if (name != serviceName) return;
    log_.line("Another copy of Tarnwick took over");
    if (onLost_) onLost_();
}

} // namespace tarnwick::xdg
