#pragma once

#include <QQuickImageProvider>

namespace tamsel {

/// The own icons in one colour, as images "image://icon/SYMBOL/COLOUR" with a colour as QML writes
/// it, without its "#". Icon.qml's. The toolkit's own coloured image would bring its whole library
/// of controls into the first frame.
class IconProvider final : public QQuickImageProvider {
public:
    IconProvider() : QQuickImageProvider(Image) {}

    /// A null image for a symbol that there isn't.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace tamsel
