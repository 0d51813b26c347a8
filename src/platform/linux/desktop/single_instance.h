#pragma once

#include "base/error.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

#include <chrono>

namespace tamsel {

/// Sees to it that one instance runs a session bus, by the bus name of org.freedesktop.Application.
/// Main thread.
class SingleInstance final : public QObject {
    Q_OBJECT

public:
    enum class Role {
        running,    ///< the one instance; without a bus, one that knows nothing of others
        handedOver, ///< another one runs and has taken the URLs over
    };

    /// How long the running instance may take to show that it lives, and then, since it may be busy
    /// with its own start, to take the URLs.
    static constexpr std::chrono::milliseconds answerTime{2000};
    static constexpr std::chrono::milliseconds busyTime{20'000};

    explicit SingleInstance(QDBusConnection bus);
    ~SingleInstance() override;

    /// Takes the name, or hands `urls` to who has it; without any it asks to be shown. Blocks while
    /// the other one answers. Fails when that one does not. What others hand over from then on is
    /// told on later turns of the main loop.
    Result<Role> claim(const QStringList& urls);

    /// Those of a program's arguments that are URLs, as they are written.
    static QStringList urlsOf(const QStringList& arguments);

signals:
    /// Another start, with URLs or without.
    void openedAgain(const QStringList& urls);
    /// The desktop asks the application to quit.
    void quitRequested();

private:
    QDBusMessage handOver(const QStringList& urls);

    QDBusConnection m_bus;
};

} // namespace tamsel
