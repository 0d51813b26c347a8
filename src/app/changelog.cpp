#include "app/changelog.h"

#include "platform/bundle.h"

#include <QFile>
#include <QStringDecoder>

namespace tamsel {

namespace {

constexpr qint64 maxChangelog = qint64{1024} * 1024;

QString readText(const QString& path) {
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return {};
    QStringDecoder decode(QStringDecoder::Utf8);
    QString text = decode(file.read(maxChangelog));
    return decode.hasError() ? QString() : text;
}

bool isBlank(const QString& line) {
    return std::all_of(line.begin(), line.end(), [](QChar c) { return c == u' ' || c == u'\t'; });
}

} // namespace

QString newestChangelogEntry(const QString& changelog) {
    const QLatin1String heading("## ");
    const QStringList lines = changelog.split(u'\n');
    const auto isHeading = [heading](const QString& line) { return line.startsWith(heading); };
    const auto title = std::find_if(lines.begin(), lines.end(), isHeading);
    QStringList kept;
    if (title != lines.end()) {
        const auto end = std::find_if(title + 1, lines.end(), isHeading);
        std::copy_if(title + 1, end, std::back_inserter(kept),
                     [](const QString& line) { return !isBlank(line); });
    }
    return kept.join(u'\n');
}

QString loadLatestChangelog(const Bundle& bundle) {
    const QStringList localizations = bundle.preferredLocalizations();
    const QString english = QStringLiteral("en");
    const QString language = localizations.value(0, english);
    const QString plain = QStringLiteral("changelog");
    const QString type = QStringLiteral("txt");
    const QString name = language == english ? plain : plain + u'_' + language;
    auto path = bundle.pathForResourceIn(plain, name, type);
    if (!path)
        path = bundle.pathForResourceIn(plain, plain, type);
    return path ? newestChangelogEntry(readText(*path)) : QString();
}

QString loadChangelog(const Bundle& bundle) {
    const QString english = QStringLiteral("en");
    const QString code = bundle.preferredLanguages().value(0, english).section(u'-', 0, 0);
    const QString plain = QStringLiteral("changelog");
    const QString type = QStringLiteral("txt");
    auto path = bundle.pathForResource(code == english ? plain : plain + u'_' + code, type);
    if (!path)
        path = bundle.pathForResource(plain, type);
    return path ? readText(*path) : QString();
}

} // namespace tamsel
