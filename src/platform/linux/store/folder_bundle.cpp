#include "platform/linux/store/folder_bundle.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStringList>
#include <QXmlStreamReader>

namespace tamsel {

namespace {

struct Info {
    QMap<QString, QString> texts;
    QMap<QString, QStringList> lists;
};

QStringList readTexts(QXmlStreamReader& xml) {
    QStringList texts;
    while (xml.readNextStartElement()) {
        if (xml.name() == u"string")
            texts << xml.readElementText();
        else
            xml.skipCurrentElement();
    }
    return texts;
}

/// The texts and lists of texts of the property list's outermost dictionary; what can't be read is
/// left out.
Info readInfo(const QString& file) {
    Info info;
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
            info.texts.insert(key, xml.readElementText());
        } else if (xml.name() == u"array") {
            info.lists.insert(key, readTexts(xml));
        } else {
            xml.skipCurrentElement();
        }
    }
    return info;
}

} // namespace

FolderBundle::FolderBundle(QString folder, QString programFolder, DaemonProgram daemon)
    : m_folder(std::move(folder)), m_programFolder(std::move(programFolder)), m_daemon(daemon) {
    Info info = readInfo(m_folder + QStringLiteral("/Info.plist"));
    m_info = std::move(info.texts);
    m_localizations = info.lists.value(QStringLiteral("CFBundleLocalizations"));
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
    if (m_daemon == DaemonProgram::elsewhere && name == u"tamsel-daemon" && type == u"app")
        return candidates.front();
    return std::nullopt;
}

std::optional<QString> FolderBundle::pathForResourceIn(const QString& subdirectory,
                                                       const QString& name,
                                                       const QString& type) const {
    const QFileInfo file(QStringLiteral("%1/%2/%3.%4").arg(m_folder, subdirectory, name, type));
    return file.isFile() ? std::optional(file.canonicalFilePath()) : std::nullopt;
}

QStringList FolderBundle::preferredLocalizations() const {
    return matchingLocalizations(QLocale::system().uiLanguages(), m_localizations);
}

QStringList FolderBundle::preferredLanguages() const {
    return QLocale::system().uiLanguages();
}

QStringList FolderBundle::matchingLocalizations(const QStringList& languages,
                                                const QStringList& available) {
    QStringList matching;
    for (const QString& language : languages) {
        const QLocale locale(language);
        const QString code = QLocale::languageToCode(locale.language());
        const QString withScript = code + u'-' + QLocale::scriptToCode(locale.script());
        for (const QString& candidate : {language, withScript, code}) {
            if (available.contains(candidate) && !matching.contains(candidate))
                matching << candidate;
        }
    }
    return matching;
}

} // namespace tamsel
