#include "platform/linux/updater/version_order.h"

#include <QList>

namespace tamsel {

namespace {

enum class PieceKind { number, separator, text };

struct Piece {
    PieceKind kind;
    QStringView characters;
};

PieceKind kindOf(QChar c) {
    // Digits of other scripts have no place in a version.
    if (c >= u'0' && c <= u'9')
        return PieceKind::number;
    return c.isSpace() || c.isPunct() ? PieceKind::separator : PieceKind::text;
}

QList<Piece> piecesOf(QStringView version) {
    QList<Piece> pieces;
    for (qsizetype begin = 0, end = 0; begin < version.size(); begin = end) {
        const PieceKind kind = kindOf(version[begin]);
        while (end < version.size() && kindOf(version[end]) == kind)
            ++end;
        // Which sign separates, and how many of them, says nothing.
        if (kind != PieceKind::separator)
            pieces.append({kind, version.sliced(begin, end - begin)});
    }
    return pieces;
}

std::weak_ordering compareNumbers(QStringView left, QStringView right) {
    const auto significant = [](QStringView digits) {
        while (digits.startsWith(u'0'))
            digits = digits.sliced(1);
        return digits;
    };
    left = significant(left);
    right = significant(right);
    if (left.size() != right.size())
        return left.size() <=> right.size();
    return left.compare(right) <=> 0;
}

std::weak_ordering comparePieces(const Piece& left, const Piece& right) {
    if (left.kind != right.kind)
        return left.kind == PieceKind::number ? std::weak_ordering::greater
                                              : std::weak_ordering::less;
    if (left.kind == PieceKind::number)
        return compareNumbers(left.characters, right.characters);
    return left.characters.compare(right.characters) <=> 0;
}

} // namespace

std::weak_ordering compareVersions(QStringView left, QStringView right) {
    const QList<Piece> lefts = piecesOf(left);
    const QList<Piece> rights = piecesOf(right);
    const qsizetype common = std::min(lefts.size(), rights.size());
    for (qsizetype i = 0; i < common; ++i) {
        if (const auto order = comparePieces(lefts[i], rights[i]); std::is_neq(order))
            return order;
    }
    // What is left over: a further number makes a version newer, a text ("beta") one before it.
    if (lefts.size() > common)
        return lefts[common].kind == PieceKind::number ? std::weak_ordering::greater
                                                       : std::weak_ordering::less;
    if (rights.size() > common)
        return rights[common].kind == PieceKind::number ? std::weak_ordering::less
                                                        : std::weak_ordering::greater;
    return std::weak_ordering::equivalent;
}

} // namespace tamsel
