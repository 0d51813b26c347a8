#include "platform/linux/updater/appcast.h"

#include "platform/linux/updater/xml_shape.h"

#include <QHash>
#include <QXmlStreamReader>

#include <algorithm>

namespace tamsel {

namespace {

constexpr qsizetype maxItems = 1'000;

/// A version is told by these characters alone; of other texts the first are enough.
constexpr qsizetype maxVersion = 64;
constexpr qsizetype maxText = 200;
constexpr qsizetype digestSize = 32;

bool isVersion(const QString& text) {
    const auto isAllowed = [](QChar c) {
        return (c.unicode() < 0x80 && c.isLetterOrNumber()) || QStringView(u".-+_~ ").contains(c);
    };
    return text.size() <= maxVersion && std::all_of(text.begin(), text.end(), isAllowed);
}

/// On one line, without what steers a terminal or a text's direction.
QString shown(const QString& text) {
    QString kept;
    for (const QChar c : text.left(maxText)) {
        if (c.category() == QChar::Other_Control)
            kept += u' ';
        else if (c.category() != QChar::Other_Format)
            kept += c;
    }
    return kept.simplified();
}

QDateTime dateOf(const QString& text) {
    return QDateTime::fromString(text, Qt::ISODate).toUTC();
}

using TextField = QString AppcastEntry::*;

/// The names that may stand as an element of the item or as an attribute of its enclosure.
const QHash<QString, TextField>& ownFields() {
    static const QHash<QString, TextField> fields{
        {QStringLiteral("version"), &AppcastEntry::version},
        {QStringLiteral("shortVersionString"), &AppcastEntry::shortVersion},
        {QStringLiteral("minimumSystemVersion"), &AppcastEntry::minimumSystem},
        {QStringLiteral("maximumSystemVersion"), &AppcastEntry::maximumSystem},
        {QStringLiteral("hardwareRequirements"), &AppcastEntry::hardware},
        {QStringLiteral("channel"), &AppcastEntry::channel},
        {QStringLiteral("os"), &AppcastEntry::os},
        {QStringLiteral("edSignature"), &AppcastEntry::edSignature},
    };
    return fields;
}

class AppcastReader final {
public:
    explicit AppcastReader(const QByteArray& xml) : m_xml(xml) {}

    Result<Appcast> read();

private:
    /// The next element inside the one that is open, past anything that is not wanted.
    bool nextElement();
    void readChannel();
    void readOwn(const QString& name);
    AppcastEntry readItem();
    void readEnclosure(AppcastEntry& entry);
    QString text() { return m_xml.readElementText().trimmed(); }

    QXmlStreamReader m_xml;
    Appcast m_appcast;
};

bool AppcastReader::nextElement() {
    while (!m_xml.atEnd()) {
        switch (m_xml.readNext()) {
        case QXmlStreamReader::StartElement:
            return true;
        case QXmlStreamReader::EndElement:
            return false;
        case QXmlStreamReader::DTD:
            m_xml.raiseError(QStringLiteral("a document type is not allowed"));
            return false;
        default:
            break;
        }
    }
    return false;
}

Result<Appcast> AppcastReader::read() {
    if (nextElement()) {
        if (m_xml.name() != u"rss")
            m_xml.raiseError(QStringLiteral("is not a feed"));
        while (nextElement()) {
            if (m_xml.name() == u"channel")
                readChannel();
            else
                m_xml.skipCurrentElement();
        }
    }
    // To the end of the document: what comes after the feed may be wrong too.
    while (!m_xml.atEnd())
        m_xml.readNext();
    if (m_xml.hasError())
        return fail(m_xml.errorString().toStdString(),
                    "line " + std::to_string(m_xml.lineNumber()));
    return m_appcast;
}

void AppcastReader::readChannel() {
    while (nextElement()) {
        const QString name = m_xml.name().toString();
        if (m_xml.namespaceUri() == ownNamespace) {
            readOwn(name);
            continue;
        }
        if (name != u"item") {
            m_xml.skipCurrentElement();
            continue;
        }
        m_appcast.entries.append(readItem());
        if (m_appcast.entries.size() > maxItems)
            m_xml.raiseError(QStringLiteral("has too many items"));
    }
}

void AppcastReader::readOwn(const QString& name) {
    if (name == u"sequence")
        m_appcast.sequence = text().toULongLong();
    else if (name == u"date")
        m_appcast.date = dateOf(text());
    else if (name == u"expires")
        m_appcast.expires = dateOf(text());
    else
        m_xml.skipCurrentElement();
}

AppcastEntry AppcastReader::readItem() {
    AppcastEntry entry;
    while (nextElement()) {
        const QString name = m_xml.name().toString();
        const bool isOwn = m_xml.namespaceUri() == appcastNamespace;
        const TextField field = isOwn ? ownFields().value(name) : nullptr;
        if (field)
            entry.*field = text();
        else if (m_xml.namespaceUri() == ownNamespace && name == u"sha256")
            entry.sha256 = QByteArray::fromHex(text().toLatin1());
        else if (!isOwn && name == u"title")
            entry.title = shown(text());
        else if (!isOwn && name == u"enclosure")
            readEnclosure(entry);
        else
            m_xml.skipCurrentElement();
    }
    if (!isVersion(entry.version))
        entry.version.clear();
    entry.shortVersion = shown(entry.shortVersion).left(maxVersion);
    if (entry.shortVersion.isEmpty())
        entry.shortVersion = entry.version;
    if (entry.sha256.size() != digestSize)
        entry.sha256.clear();
    return entry;
}

void AppcastReader::readEnclosure(AppcastEntry& entry) {
    const QXmlStreamAttributes attributes = m_xml.attributes();
    for (const QXmlStreamAttribute& attribute : attributes) {
        const QString name = attribute.name().toString();
        const bool isOwn = attribute.namespaceUri() == appcastNamespace;
        if (const TextField field = isOwn ? ownFields().value(name) : nullptr)
            entry.*field = attribute.value().trimmed().toString();
    }
    entry.url =
        QUrl(attributes.value(QStringLiteral("url")).trimmed().toString(), QUrl::StrictMode);
    // What is no number announces no length.
    entry.length = attributes.value(QStringLiteral("length")).trimmed().toULongLong();
    m_xml.skipCurrentElement();
}

} // namespace

Result<Appcast> parseAppcast(const QByteArray& xml) {
    if (const auto fit = checkXmlShape(xml, {}); !fit)
        return tl::unexpected(fit.error());
    return AppcastReader(xml).read();
}

} // namespace tamsel
