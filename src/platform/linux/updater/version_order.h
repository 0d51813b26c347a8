#pragma once

#include <QStringView>

#include <compare>

namespace tamsel {

/// The order of versions in appcasts: runs of digits compare as numbers of any length, runs of
/// letters as text, a number stands above a text at its place ("1.0" is newer than "1.0b2"), and
/// of two versions that agree as far as they go the one with more numbers is newer ("1.0.1").
std::weak_ordering compareVersions(QStringView left, QStringView right);

} // namespace tamsel
