#pragma once

#include "platform/status_bar.h"

#include <QMetaObject>

#include <memory>
#include <optional>

namespace tamsel {

class MainQueue;
class UpdateMgr;
class UserDefaults;
struct UpdateStatus;

/// The icon in the menu bar: there while the user wants it, red while an update waits. Main thread.
class MenuBarItem final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the object.
    MenuBarItem(StatusBar& statusBar, UserDefaults& defaults, MainQueue& queue,
                UpdateMgr& updateMgr, QObject* parent = nullptr);
    ~MenuBarItem() override;

    bool hasStatusItem() const { return m_statusItem != nullptr; }
    /// Brings the icon in line with the user's choice, which is yes before it is made.
    void updateMenuBarVisibility();
    /// Makes the icon anew, if there is one.
    void renew();

signals:
    void clicked();

private:
    void createStatusItem();
    void removeStatusItem();
    void subscribeToUpdates();
    void updateStatusIcon(const UpdateStatus& status);
    /// What waits, in words; empty while nothing does.
    static QString pendingText(const UpdateStatus& status);

    StatusBar& m_statusBar;
    UserDefaults& m_defaults;
    MainQueue& m_queue;
    UpdateMgr& m_updateMgr;
    std::unique_ptr<StatusItem> m_statusItem;
    std::optional<QString> m_pending;    ///< what the item shows as waiting; none before it does
    QMetaObject::Connection m_updateSub; ///< alive while the item is
    QMetaObject::Connection m_statusClickMonitor;
};

} // namespace tamsel
