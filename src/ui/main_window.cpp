#include "ui/main_window.h"

#include "app/about_vm.h"
#include "app/dashboard_vm.h"
#include "app/permission_mgr.h"
#include "app/settings_guide_vm.h"
#include "devices/device_mgr_vm.h"
#include "editors/combo_vm.h"
#include "editors/mapping_vm.h"
#include "feedback/feedback_vm.h"
#include "keytools/key_recorder_vm.h"
#include "keytools/key_viewer_vm.h"
#include "keytools/keyboard_shortcut_handler.h"
#include "ui/icon_provider.h"
#include "ui/main_vm.h"

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

MainWindow::MainWindow(const WindowModels& models) {
    nameModule();
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.addImageProvider(QStringLiteral("icon"), new IconProvider); // the engine's from now on
    m_engine.setInitialProperties({
        {QStringLiteral("main"), QVariant::fromValue(&models.main)},
        {QStringLiteral("mapping"), QVariant::fromValue(&models.mapping)},
        {QStringLiteral("combo"), QVariant::fromValue(&models.combo)},
        {QStringLiteral("dashboard"), QVariant::fromValue(&models.dashboard)},
        {QStringLiteral("devices"), QVariant::fromValue(&models.devices)},
        {QStringLiteral("feedback"), QVariant::fromValue(&models.feedback)},
        {QStringLiteral("guide"), QVariant::fromValue(&models.guide)},
        {QStringLiteral("permission"), QVariant::fromValue(&models.permission)},
        {QStringLiteral("keyRecorder"), QVariant::fromValue(&models.keyRecorder)},
        {QStringLiteral("comboRecorder"), QVariant::fromValue(&models.comboRecorder)},
        {QStringLiteral("keyViewer"), QVariant::fromValue(&models.keyViewer)},
        {QStringLiteral("about"), QVariant::fromValue(&models.about)},
        {QStringLiteral("screenKeys"), QVariant::fromValue(&models.screenKeys)},
    });
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
