#pragma once

#include "platform/service_management.h"

namespace tamsel {

/// The application as a login item: an entry of the user's autostart folder. Enabled means that
/// the entry is there, is not switched off in itself, and starts a program that exists.
class AutostartEntry final : public ServiceHandle {
public:
    /// `program` is the absolute path of what the entry starts.
    AutostartEntry(QString file, QString program);
    /// $XDG_CONFIG_HOME/autostart/app.tamsel.desktop.
    static QString standardFile();

    ServiceStatus status() override;
    ServiceResult registerService() override;
    ServiceResult unregisterService() override;

private:
    QString m_file;
    QString m_program;
};

} // namespace tamsel
