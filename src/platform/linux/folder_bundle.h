#pragma once

#include "platform/bundle.h"

#include <QMap>

namespace tamsel {

/// The bundle as a folder: `Info.plist` (XML) and resources. Companion programs stand beside the
/// application's program in a build tree, in ../libexec/tamsel/ of an installed copy.
class FolderBundle final : public Bundle {
public:
    FolderBundle(QString folder, QString programFolder);
    /// TAMSEL_BUNDLE when set, else ../share/tamsel/ beside the program's folder. When
    /// TAMSEL_DAEMON_ADDRESS names a daemon, "tamsel-daemon" counts as being there.
    static FolderBundle standard(const QString& programFolder);

    std::optional<QString> infoString(const QString& key) const override;
    std::optional<QString> pathForResource(const QString& name, const QString& type) const override;

private:
    QString m_folder;
    QString m_programFolder;
    QMap<QString, QString> m_info;
    bool m_isDaemonElsewhere = false;
};

} // namespace tamsel
