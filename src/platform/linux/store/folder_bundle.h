#pragma once

#include "platform/bundle.h"

#include <QMap>

namespace tamsel {

/// The bundle as a folder: `Info.plist` (XML) and resources. Companion programs stand beside the
/// application's program in a build tree, in ../libexec/tamsel/ of an installed copy.
class FolderBundle final : public Bundle {
public:
    /// Somebody else's daemon counts as being there.
    enum class DaemonProgram { here, elsewhere };

    FolderBundle(QString folder, QString programFolder, DaemonProgram daemon = DaemonProgram::here);

    std::optional<QString> infoString(const QString& key) const override;
    std::optional<QString> pathForResource(const QString& name, const QString& type) const override;
    std::optional<QString> pathForResourceIn(const QString& subdirectory, const QString& name,
                                             const QString& type) const override;
    QStringList preferredLocalizations() const override;
    QStringList preferredLanguages() const override;

    /// Those of `available` that somebody with these languages reads, in their order.
    static QStringList matchingLocalizations(const QStringList& languages,
                                             const QStringList& available);

private:
    QString m_folder;
    QString m_programFolder;
    QMap<QString, QString> m_info;
    QStringList m_localizations;
    DaemonProgram m_daemon;
};

} // namespace tamsel
