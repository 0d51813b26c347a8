#include "platform/linux/folder_bundle.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QXmlStreamReader>

namespace tamsel {

namespace {

/// The text values of the property list's outermost dictionary; what can't be read is left out.
QMap<QString, QString> readInfo(const QString& file) {
    QMap<QString, QString> info;
    QFile in(file);
    if (!in.open(QFile::ReadOnly))
        return info;
    QXmlStreamReader xml(&in);
    if (!xml.readNextStartElement() || xml.name() != u"plist" || !xml.readNextStartElement() ||
        xml.name() != u"dict")
        return info;
    QString key;
    while (xml.readNextStartElement()) {
        if (xml.name() == u"key") {
            key = xml.readElementText();
        } else if (xml.name() == u"string") {
            info.insert(key, xml.readElementText());
        } else {
            xml.skipCurrentElement();
        }
    }
    return info;
}

} // namespace

FolderBundle::FolderBundle(QString folder, QString programFolder)
    : m_folder(std::move(folder)),
      m_programFolder(std::move(programFolder)),
      m_info(readInfo(m_folder + QStringLiteral("/Info.plist"))) {}

FolderBundle FolderBundle::standard(const QString& programFolder) {
    const QString chosen = qEnvironmentVariable("TAMSEL_BUNDLE");
    FolderBundle bundle(chosen.isEmpty() ? programFolder + QStringLiteral("/../share/tamsel")
                                         : chosen,
                        programFolder);
    bundle.m_isDaemonElsewhere = !qEnvironmentVariableIsEmpty("TAMSEL_DAEMON_ADDRESS");
    return bundle;
}

std::optional<QString> FolderBundle::infoString(const QString& key) const {
    const auto found = m_info.constFind(key);
    return found == m_info.constEnd() ? std::nullopt : std::optional(*found);
}

std::optional<QString> FolderBundle::pathForResource(const QString& name,
                                                     const QString& type) const {
    const QStringList candidates =
        type == u"app" ? QStringList{m_programFolder + u'/' + name,
                                     m_programFolder + QStringLiteral("/../libexec/tamsel/") + name}
                       : QStringList{m_folder + u'/' + name + u'.' + type};
    for (const QString& path : candidates) {
        const QFileInfo file(path);
        if (file.isFile() && (type != u"app" || file.isExecutable()))
            return file.canonicalFilePath();
    }
    if (m_isDaemonElsewhere && name == u"tamsel-daemon" && type == u"app")
        return candidates.front();
    return std::nullopt;
}

} // namespace tamsel
