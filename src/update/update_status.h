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
    enum Kind { idle, checking, upToDate, updateAvailable, downloading, readyToInstall, error };
    Q_ENUM(Kind)

    UpdateStatus() = default;
    /// Not explicit: a case stands for its status.
    UpdateStatus(Kind theKind) : kind(theKind) {}

    Kind kind = idle;
    QString version;     ///< of updateAvailable
    double progress = 0; ///< of downloading, 0 to 1
    QString message;     ///< of error, translated

    bool operator==(const UpdateStatus&) const = default;
};

} // namespace tamsel
