#pragma once

#include <QString>
#include <QStringView>

#include <optional>

class QUrl;

namespace tamsel {

/// The number of user-perceived characters (extended grapheme clusters of UAX #29). Counting stops
/// at `limit` when one is given, so the result is at most `limit`.
qsizetype characterCount(QStringView text, std::optional<qsizetype> limit = std::nullopt);

inline constexpr qsizetype maxUrlCharacters = 2048;

/// The one rule for URLs that the program opens or lets a user enter: not empty, at most
/// maxUrlCharacters characters, strictly parseable, with a scheme, and the scheme is not "file" in
/// any letter case. Gives the parsed URL when the text passes.
std::optional<QUrl> openableURL(const QString& text);

} // namespace tamsel
