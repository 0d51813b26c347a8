#pragma once

#include <QDBusConnection>
#include <QObject>

namespace tamsel {

/// Whether this session has a panel that shows status notifier items. Followed by the bus's own
/// announcements, without polling. Main thread.
class StatusNotifierHost final : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierHost(QDBusConnection bus);

    bool isThere() const { return m_isThere; }

signals:
    /// A watcher has come or gone, or the panel behind it: items register anew.
    void changed();

private slots:
    void askWatcher();

private:
    void setThere(bool isThere);

    QDBusConnection m_bus;
    bool m_isThere = false;
    quint64 m_question = 0; ///< counts what was asked, to tell late answers
};

} // namespace tamsel
