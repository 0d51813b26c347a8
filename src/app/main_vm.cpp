#include "app/main_vm.h"

#include "platform/notification_center.h"

#include <QHash>

#include <utility>

namespace tamsel {

MainVM::MainVM(NotificationCenter& notifications, QObject* parent)
    : QObject(parent), m_notifications(notifications) {
    connect(&notifications, &NotificationCenter::navigateToPage, this, &MainVM::navigate);
    connect(&notifications, &NotificationCenter::keyboardShortcutA, this, &MainVM::addRequested);
    connect(&notifications, &NotificationCenter::applicationDidHide, this,
            [this] { setHidden(true); });
    connect(&notifications, &NotificationCenter::mainWindowReopen, this, [this] {
        setHidden(false);
        Q_EMIT reopened();
    });
}

KeyboardShortcutHandler::Shortcuts MainVM::screenKeys() {
    KeyboardShortcutHandler::Shortcuts keys{
        {u'a', [this] { Q_EMIT m_notifications.keyboardShortcutA(); }}};
    for (const MenuItem item : {Dashboard, Mapping, Combo, Devices, About})
        keys[QChar(u'1' + item)] = [this, item] { select(item); };
    return keys;
}

void MainVM::select(MenuItem item) {
    if (m_selected == item)
        return;
    m_selected = item;
    Q_EMIT selectedChanged();
}

void MainVM::setHidden(bool hidden) {
    if (std::exchange(m_isHidden, hidden) != hidden)
        Q_EMIT isHiddenChanged();
}

void MainVM::navigate(const QString& pageName) {
    static const QHash<QString, MenuItem> pages{
        {QStringLiteral(""), Dashboard},     {QStringLiteral("dashboard"), Dashboard},
        {QStringLiteral("dash"), Dashboard}, {QStringLiteral("mapping"), Mapping},
        {QStringLiteral("map"), Mapping},    {QStringLiteral("combo"), Combo},
        {QStringLiteral("shortcut"), Combo}, {QStringLiteral("devices"), Devices},
        {QStringLiteral("device"), Devices}, {QStringLiteral("about"), About},
        {QStringLiteral("settings"), About},
    };
    const auto page = pages.constFind(pageName.toLower());
    if (page != pages.cend())
        select(*page);
}

} // namespace tamsel
