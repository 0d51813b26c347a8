#include "platform/linux/updater/appcast_writer.h"

#include <QXmlStreamWriter>

#include <array>
#include <utility>

namespace tamsel {

namespace {

void writeEntry(QXmlStreamWriter& xml, const AppcastEntry& entry) {
    const QString names = appcastNamespace.toString();
    const std::array<std::pair<const char*, QString>, 7> texts{{
        {"version", entry.version},
        {"shortVersionString", entry.shortVersion},
        {"minimumSystemVersion", entry.minimumSystem},
        {"maximumSystemVersion", entry.maximumSystem},
        {"hardwareRequirements", entry.hardware},
        {"channel", entry.channel},
        {"os", entry.os},
    }};
    xml.writeStartElement(QStringLiteral("item"));
    xml.writeTextElement(QStringLiteral("title"), entry.title);
    for (const auto& [name, text] : texts) {
        if (!text.isEmpty())
            xml.writeTextElement(names, QLatin1String(name), text);
    }
    xml.writeTextElement(ownNamespace.toString(), QStringLiteral("sha256"),
                         QString::fromLatin1(entry.sha256.toHex()));
    xml.writeStartElement(QStringLiteral("enclosure"));
    xml.writeAttribute(QStringLiteral("url"), entry.url.toString(QUrl::FullyEncoded));
    xml.writeAttribute(QStringLiteral("length"), QString::number(entry.length));
    xml.writeAttribute(QStringLiteral("type"), QStringLiteral("application/octet-stream"));
    xml.writeAttribute(names, QStringLiteral("edSignature"), entry.edSignature);
    xml.writeEndElement();
    xml.writeEndElement();
}

} // namespace

QByteArray writeAppcast(const Appcast& appcast) {
    const QString own = ownNamespace.toString();
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("rss"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    xml.writeNamespace(appcastNamespace.toString(), QStringLiteral("sparkle"));
    xml.writeNamespace(own, QStringLiteral("tamsel"));
    xml.writeStartElement(QStringLiteral("channel"));
    xml.writeTextElement(QStringLiteral("title"), QStringLiteral("Tamsel"));
    xml.writeTextElement(own, QStringLiteral("sequence"), QString::number(appcast.sequence));
    xml.writeTextElement(own, QStringLiteral("date"), appcast.date.toString(Qt::ISODate));
    xml.writeTextElement(own, QStringLiteral("expires"), appcast.expires.toString(Qt::ISODate));
    for (const AppcastEntry& entry : appcast.entries)
        writeEntry(xml, entry);
    xml.writeEndDocument();
    return text;
}

} // namespace tamsel
