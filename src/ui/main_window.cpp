#include "ui/main_window.h"

#include "program/screens.h"
#include "ui/icon_provider.h"

#include <QScreen>
#include <QVariant>

// Both register themselves when the program starts, which a static library does only for what its
// user names: the module's types and its compiled QML.
void qml_register_types_Tamsel();
static void nameModule() {
    Q_INIT_RESOURCE(qmlcache_tamsel_ui);
    [[maybe_unused]] static volatile auto types = &qml_register_types_Tamsel;
}

namespace tamsel {

MainWindow::MainWindow(Screens& screens) {
    nameModule();
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(QStringLiteral("icon"), new IconProvider); // the engine's from now on
    m_engine.setInitialProperties({{QStringLiteral("screens"), QVariant::fromValue(&screens)}});
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Tamsel/screens/MainV.qml")));
    if (QQuickWindow* main = window()) {
        QRect frame = main->geometry();
        frame.moveCenter(main->screen()->availableGeometry().center());
        main->setPosition(frame.topLeft());
    }
}

QQuickWindow* MainWindow::window() const {
    const QObjectList roots = m_engine.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
}

} // namespace tamsel
