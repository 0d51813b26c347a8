#include "config/text_rules.h"

#include <QTextBoundaryFinder>
#include <QUrl>

namespace tamsel {

qsizetype characterCount(QStringView text, std::optional<qsizetype> limit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while ((!limit || count < *limit) && finder.toNextBoundary() != -1)
        ++count;
    return count;
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
