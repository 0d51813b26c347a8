#include "driver/sys_ext_status.h"

#include <QCoreApplication>

namespace tamsel {

QString SysExtStatus::displayText() const {
    const auto tr = [](const char* text) {
        return QCoreApplication::translate("SysExtStatus", text);
    };
    switch (kind) {
    case error:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Error")) + QStringLiteral(": [") +
               QString::number(code) + QStringLiteral("] ") + message;
    case unknown:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Unknown"));
    case loading:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Loading..."));
    case unloading:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Unloading..."));
    case needsApproval:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Requires approval in System Settings"));
    case loaded:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Loaded"));
    case completesAfterRestart:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Completes after restart"));
    case unknownResult:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Unknown result"));
    case repairing:
        return tr(QT_TRANSLATE_NOOP("SysExtStatus", "Repairing driver state..."));
    }
    return {};
}

} // namespace tamsel
