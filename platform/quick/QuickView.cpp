#include "platform/quick/QuickView.h"

#include "platform/quick/SettingsBridge.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickItemGrabResult>
#include <QTimer>

#include <iostream>

namespace tarnwick::quick {

QQmlEngine& viewEngine() {
    // The application's child: it goes after the event loop, when the
    // program has deleted the views still pending (LaterDeleter).
    static QPointer<QQmlEngine> engine;
    if (!engine) {
        engine = new QQmlEngine(QCoreApplication::instance());
        // Where our QML modules are found by name (tarnwick.settings).
        engine->addImportPath("qrc:/");
        addImageProviders(*engine);
    }
    return *engine;
}

std::unique_ptr<QQuickView> loadView(const QString& file, QObject* bridge) {
    QQmlEngine& engine = viewEngine();
    auto view = std::make_unique<QQuickView>(&engine, nullptr);
    view->setColor(Qt::transparent);
    view->setResizeMode(QQuickView::SizeViewToRootObject);
    // The engine's root context is everyone's; `view` is this view's alone,
    // and the context goes with the view, after its scene.
    auto* context = new QQmlContext(&engine, view.get());
    context->setContextProperty("view", bridge);
    const QUrl url("qrc:/tarnwick/" + file);
    auto* component = new QQmlComponent(&engine, url, QQmlComponent::PreferSynchronous, view.get());
    QObject* root = component->isReady() ? component->create(context) : nullptr;
    for (const auto& e : component->errors())
        std::cerr << "tarnwick: " << e.toString().toStdString() << "\n";
    if (auto* item = qobject_cast<QQuickItem*>(root))
        view->setContent(url, component, item);
    else
        delete root;
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
