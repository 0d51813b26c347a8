#include "ui/fonts.h"

namespace tamsel {

namespace {

QFont fontOf(const QStringList& families, int size, int weight) {
    QFont font(families);
    font.setPixelSize(size);
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}

} // namespace

QFont Fonts::sans(int size, int weight) {
    return fontOf({QStringLiteral("Inter"), QStringLiteral("sans-serif")}, size, weight);
}

QFont Fonts::mono(int size, int weight) {
    return fontOf({QStringLiteral("JetBrains Mono"), QStringLiteral("monospace")}, size, weight);
}

} // namespace tamsel
