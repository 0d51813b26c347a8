#include "config/text_rules.h"

#include <QTextBoundaryFinder>
#include <QUrl>

#include <algorithm>

namespace tamsel {

namespace {

/// More than the widest window shows; a text from outside may have millions.
constexpr std::size_t shownUnits = 400;
/// More than anybody reads in one piece.
constexpr qsizetype shownTextUnits = 20'000;

/// It would reach into what stands around the text.
bool isHarmful(QChar c) {
    return c.category() == QChar::Other_Control || (c >= u'\u202A' && c <= u'\u202E') ||
           (c >= u'\u2066' && c <= u'\u2069');
}

} // namespace

qsizetype characterCount(QStringView text, std::optional<qsizetype> limit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while ((!limit || count < *limit) && finder.toNextBoundary() != -1)
        ++count;
    return count;
}

QString firstCharacters(const QString& text, qsizetype count) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (count-- > 0 && finder.toNextBoundary() != -1) {
    }
    return finder.position() == -1 ? text : text.left(finder.position());
}

QString shownLine(QString text) {
    text.truncate(shownUnits);
    for (QChar& character : text) {
        if (character == u'\n')
            character = u'↵';
        else if (character == u'\t')
            character = u'⇥';
        else if (isHarmful(character))
            character = u'·';
    }
    return text;
}

QString shownLine(const std::string& text) {
    constexpr std::size_t longestUnit = 3; // bytes of UTF-8
    const std::size_t bytes = std::min(text.size(), shownUnits * longestUnit);
    return shownLine(QString::fromUtf8(text.data(), qsizetype(bytes)));
}

QString shownText(QString text) {
    if (text.size() > shownTextUnits) {
        text.truncate(shownTextUnits - 1);
        text += u'…';
    }
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar& character : text) {
        if (character != u'\n' && character != u'\t' && isHarmful(character))
            character = u'·';
    }
    return text;
}

std::optional<QUrl> openableURL(const QString& text) {
    if (text.isEmpty() || characterCount(text, maxUrlCharacters + 1) > maxUrlCharacters)
        return std::nullopt;
    QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.scheme().toLower() == u"file")
        return std::nullopt;
    return url;
}

} // namespace tamsel
