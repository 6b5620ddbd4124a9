#include "platform/quick/QuickView.h"

#include "platform/quick/SettingsBridge.h"

#include <QEventLoop>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickItemGrabResult>
#include <QTimer>

#include <iostream>

namespace tarnwick::quick {

std::unique_ptr<QQuickView> loadView(const QString& file, QObject* bridge) {
    auto view = std::make_unique<QQuickView>();
    view->setColor(Qt::transparent);
    view->setResizeMode(QQuickView::SizeViewToRootObject);
    addImageProviders(*view->engine());
    view->rootContext()->setContextProperty("view", bridge);
    view->setSource(QUrl("qrc:/tarnwick/" + file));
    for (const auto& e : view->errors())
        std::cerr << "tarnwick: " << e.toString().toStdString() << "\n";
    return view;
}

void LaterDeleter::operator()(QQuickView* view) const {
    if (!view) return;
    view->hide();
    view->deleteLater();
}

QImage grab(QQuickView& view) {
    QQuickItem* root = view.rootObject();
    if (!root) return {};
    if (!view.isVisible()) view.show(); // nothing is rendered for a hidden window
    // grabToImage keeps the alpha that grabWindow loses on the offscreen platform.
    auto result = root->grabToImage();
    if (!result) return view.grabWindow();
    QImage image;
    QEventLoop loop;
    QObject::connect(result.data(), &QQuickItemGrabResult::ready, &loop, [&] {
        image = result->image();
        loop.quit();
    });
    QTimer::singleShot(5000, &loop, &QEventLoop::quit);
    loop.exec();
    return image;
}

QString symbolUrl(const std::string& name) {
    return "qrc:/tarnwick/resources/symbols/" + qs(name) + ".svg";
}

} // namespace tarnwick::quick
