#pragma once

#include <QObject>
#include <QString>

namespace tamsel {

/// Where an update stands, for the user.
struct UpdateStatus {
    Q_GADGET
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(QString version MEMBER version)
    Q_PROPERTY(double progress MEMBER progress)
    Q_PROPERTY(QString message MEMBER message)

public:
    enum Kind {
        updateAvailable, ///< one was found and waits for the user
        downloading,
        error, ///< the last check or session failed
        idle,
        checking,
        upToDate,
        readyToInstall, ///< downloaded and unpacked
    };
    Q_ENUM(Kind)

    UpdateStatus() = default;
    /// Not explicit: a case stands for its status.
    UpdateStatus(Kind theKind) : kind(theKind) {}
    static UpdateStatus available(const QString& version) {
        UpdateStatus status(updateAvailable);
        status.version = version;
        return status;
    }
    static UpdateStatus downloaded(double fraction) {
        UpdateStatus status(downloading);
        status.progress = fraction;
        return status;
    }
    static UpdateStatus failed(const QString& message) {
        UpdateStatus status(error);
        status.message = message;
        return status;
    }

    Kind kind = idle;
    QString version;     ///< of updateAvailable
    double progress = 0; ///< of downloading: 1 is all that was announced
    QString message;     ///< of error

    bool operator==(const UpdateStatus&) const = default;
};

} // namespace tamsel
