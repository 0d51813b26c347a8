#include "app/menu_bar_item.h"

#include "platform/main_queue.h"
#include "platform/user_defaults.h"
#include "update/update_mgr.h"

#include <QImage>
#include <QPainter>

#include <utility>

namespace tamsel {

namespace {

const QString showInMenuBarKey = QStringLiteral("ShowInMenuBar");
const QString iconName = QStringLiteral("MenuBarIcon");
constexpr QRgb systemRed = 0xFFFF3B30;

/// The icon's shape, all of it in red.
QImage redIcon(const QImage& icon) {
    QImage red(icon.size(), QImage::Format_ARGB32_Premultiplied);
    red.fill(Qt::transparent);
    QPainter painter(&red);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    painter.drawImage(red.rect(), icon);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(red.rect(), QColor::fromRgb(systemRed));
    return red;
}

} // namespace

MenuBarItem::MenuBarItem(StatusBar& statusBar, UserDefaults& defaults, MainQueue& queue,
                         UpdateMgr& updateMgr, QObject* parent)
    : QObject(parent),
      m_statusBar(statusBar),
      m_defaults(defaults),
      m_queue(queue),
      m_updateMgr(updateMgr) {}

MenuBarItem::~MenuBarItem() = default;

void MenuBarItem::updateMenuBarVisibility() {
    const auto shows = m_defaults.boolForKey(showInMenuBarKey);
    if (!shows) {
        static_cast<void>(m_defaults.setBool(true, showInMenuBarKey));
        createStatusItem();
    } else if (!*shows) {
        removeStatusItem();
    } else if (!m_statusItem) {
        createStatusItem();
    }
}

void MenuBarItem::renew() {
    if (!m_statusItem)
        return;
    removeStatusItem();
    createStatusItem();
}

void MenuBarItem::createStatusItem() {
    m_statusItem = m_statusBar.makeItem();
    m_statusItem->setImage(m_statusBar.imageNamed(iconName), ImageKind::templateImage);
    m_statusClickMonitor =
        connect(m_statusItem.get(), &StatusItem::clicked, this, &MenuBarItem::clicked);
    m_queue.async(this, [this] { subscribeToUpdates(); });
}

void MenuBarItem::removeStatusItem() {
    m_statusItem.reset();
    m_pending.reset();
    disconnect(m_statusClickMonitor);
    disconnect(m_updateSub);
}

void MenuBarItem::subscribeToUpdates() {
    disconnect(m_updateSub);
    if (!m_statusItem)
        return;
    m_updateSub = connect(&m_updateMgr, &UpdateMgr::checkStatusChanged, this,
                          [this] { updateStatusIcon(m_updateMgr.checkStatus()); });
    updateStatusIcon(m_updateMgr.checkStatus());
}

QString MenuBarItem::pendingText(const UpdateStatus& status) {
    switch (status.kind) {
    case UpdateStatus::updateAvailable:
        return tr("Version %1 is available").arg(status.version);
    case UpdateStatus::downloading:
        return tr("Downloading an update");
    case UpdateStatus::readyToInstall:
        return tr("An update is ready to install");
    default:
        return {};
    }
}

void MenuBarItem::updateStatusIcon(const UpdateStatus& status) {
    if (!m_statusItem)
        return;
    // A download announces each of its steps; the item looks the same in all of them.
    const QString pending = pendingText(status);
    if (std::exchange(m_pending, pending) == pending)
        return;
    m_statusItem->setToolTip(pending);
    const QImage icon = m_statusBar.imageNamed(iconName);
    if (pending.isEmpty())
        m_statusItem->setImage(icon, ImageKind::templateImage);
    else if (!icon.isNull())
        m_statusItem->setImage(redIcon(icon), ImageKind::coloured);
}

} // namespace tamsel
