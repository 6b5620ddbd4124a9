#pragma once

#include <QImage>
#include <QObject>
#include <QQuickView>
#include <QString>

#include <memory>
#include <string>

class QQmlEngine;

namespace tarnwick::quick {

inline QString qs(const std::string& s) {
    return QString::fromStdString(s);
}
inline std::string ss(const QString& s) {
    return s.toStdString();
}

// The one QML engine every view of ours shares, made on first use and
// ended with the application, after every view: the types, the compiled
// QML and the images are then loaded once, not once per island.
QQmlEngine& viewEngine();

// A QML view of ours: `file` is the view's path in the source tree
// ("island/IslandView.qml"), compiled in, with `bridge` as its root's
// required property `view` (typed: IslandBridge, SettingsBridge,
// SetupBridge). QML errors go to standard error and leave the view empty
// rather than ending the program.
std::unique_ptr<QQuickView> loadView(const QString& file, QObject* bridge);

// Ends a view of ours: hidden at once, deleted on a later turn of the event
// loop. A view is often let go from inside one of its own QML handlers (a
// button that closes its window, a tap that replaces the island), and Qt
// aborts when an object goes while one of its handlers runs. What the view
// binds to must outlive it: give the bridge to the view (`adopt`).
struct LaterDeleter {
    void operator()(QQuickView* view) const;
};
using OwnedView = std::unique_ptr<QQuickView, LaterDeleter>;

// `bridge`, which the root reads as `view`, now ends with the QQuickView, after the
// scene that reads it.
template <typename Bridge> Bridge* adopt(QQuickView& view, std::unique_ptr<Bridge> bridge) {
    if (bridge) bridge->setParent(&view);
    return bridge.release();
}

// Draws the view's current content into an image with its alpha, waiting
// for the scene graph; also works for a view that is not shown.
QImage grab(QQuickView& view);

// The address of one of our symbols ("checkmark.circle.fill").
QString symbolUrl(const std::string& name);

} // namespace tarnwick::quick
