#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <string>

class QUrl;

namespace tamsel {

/// The number of user-perceived characters (extended grapheme clusters of UAX #29). Counting stops
/// at `limit` when one is given, so the result is at most `limit`.
qsizetype characterCount(QStringView text, std::optional<qsizetype> limit = std::nullopt);

/// The beginning of a text: so many of its characters, or all of it.
QString firstCharacters(const QString& text, qsizetype count);

/// A text from outside as one line of the window: at most 400 UTF-16 units, line ends and tabs as
/// signs, other control characters and those that turn the direction of writing as a dot.
QString shownLine(QString text);
QString shownLine(const std::string& text);

/// A text from outside with its line ends and tabs: at most 20,000 UTF-16 units, cut with "…", the
/// same characters replaced as in a line.
QString shownText(QString text);

inline constexpr qsizetype maxUrlCharacters = 2048;

/// The one rule for URLs that the program opens or lets a user enter: not empty, at most
/// maxUrlCharacters characters, strictly parseable, with a scheme, and the scheme is not "file" in
/// any letter case. Gives the parsed URL when the text passes.
std::optional<QUrl> openableURL(const QString& text);

} // namespace tamsel
