#include "platform/linux/updater/appcast.h"

#include <QHash>
#include <QXmlStreamReader>

namespace tamsel {

namespace {

constexpr qsizetype maxItems = 1'000;

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

    Result<QList<AppcastEntry>> read();

private:
    /// The next element inside the one that is open, past anything that is not wanted.
    bool nextElement();
    void readChannel();
    AppcastEntry readItem();
    void readEnclosure(AppcastEntry& entry);

    QXmlStreamReader m_xml;
    QList<AppcastEntry> m_entries;
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

Result<QList<AppcastEntry>> AppcastReader::read() {
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
    return m_entries;
}

void AppcastReader::readChannel() {
    while (nextElement()) {
        if (m_xml.name() != u"item") {
            m_xml.skipCurrentElement();
            continue;
        }
        m_entries.append(readItem());
        if (m_entries.size() > maxItems)
            m_xml.raiseError(QStringLiteral("has too many items"));
    }
}

AppcastEntry AppcastReader::readItem() {
    AppcastEntry entry;
    while (nextElement()) {
        const QString name = m_xml.name().toString();
        const bool isOwn = m_xml.namespaceUri() == appcastNamespace;
        const TextField field = isOwn ? ownFields().value(name) : nullptr;
        if (field)
            entry.*field = m_xml.readElementText().trimmed();
        else if (!isOwn && name == u"title")
            entry.title = m_xml.readElementText().trimmed();
        else if (!isOwn && name == u"enclosure")
            readEnclosure(entry);
        else
            m_xml.skipCurrentElement();
    }
    if (entry.shortVersion.isEmpty())
        entry.shortVersion = entry.version;
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

Result<QList<AppcastEntry>> parseAppcast(const QByteArray& xml) {
    return AppcastReader(xml).read();
}

} // namespace tamsel
