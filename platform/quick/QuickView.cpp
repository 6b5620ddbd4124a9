#include "platform/quick/QuickView.h"

#include "platform/quick/SettingsBridge.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickItemGrabResult>
#include <QTimer>

#include <iostream>

// qmltyperegistrar's, for the module the bridges make (CMakeLists.txt).
void qml_register_types_tarnwick_quick();

namespace tarnwick::quick {

QQmlEngine& viewEngine() {
    // The application's child: it goes after the event loop, when the
    // program has deleted the views still pending (LaterDeleter).
    static QPointer<QQmlEngine> engine;
    if (!engine) {
        // The bridges' types (module tarnwick.quick), registered by name:
        // the registration lives in a static library and is otherwise dropped.
        qml_register_types_tarnwick_quick();
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
    const QUrl url("qrc:/tarnwick/" + file);
    auto* component = new QQmlComponent(&engine, url, QQmlComponent::PreferSynchronous, view.get());
    // The root's `required property view` is set before its bindings first run.
    QObject* root = component->isReady()
                        ? component->createWithInitialProperties(
                              {{QStringLiteral("view"), QVariant::fromValue(bridge)}})
                        : nullptr;
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
