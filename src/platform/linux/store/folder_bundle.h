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
    bool m_isDaemonElsewhere = false;
};

} // namespace tamsel
