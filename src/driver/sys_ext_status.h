#pragma once

#include <QObject>
#include <QString>

#include <cstdint>

namespace tamsel {

/// The driver's state as the user sees it. Only `error` carries a code and a message.
struct SysExtStatus {
    Q_GADGET
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(qint64 code MEMBER code)
    Q_PROPERTY(QString message MEMBER message)
    Q_PROPERTY(QString displayText READ displayText)

public:
    enum Kind {
        error,
        unknown, ///< nothing known yet, or the driver was taken out
        loading,
        unloading,
        needsApproval, ///< the platform waits for the user to allow the driver
        loaded,
        completesAfterRestart,
        unknownResult,
        repairing, ///< a stuck driver is being removed
    };
    Q_ENUM(Kind)

    SysExtStatus() = default;
    /// Not explicit: a case stands for its status.
    SysExtStatus(Kind theKind) : kind(theKind) {}
    static SysExtStatus failed(std::int64_t code, const QString& message) {
        SysExtStatus status(error);
        status.code = code;
        status.message = message;
        return status;
    }

    Kind kind = unknown;
    qint64 code = 0;
    QString message;

    /// Translated; an error reads "Error: [4] message".
    QString displayText() const;

    bool operator==(const SysExtStatus& other) const {
        return kind == other.kind &&
               (kind != error || (code == other.code && message == other.message));
    }
};

} // namespace tamsel
