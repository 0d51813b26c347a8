#include "ui/icon_provider.h"

#include <QImageReader>
#include <QPainter>

namespace tamsel {

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QString symbol = id.section(u'/', 0, -2);
    const QColor colour(u'#' + id.section(u'/', -1));
    QImageReader reader(QStringLiteral(":/qt/qml/Tamsel/icons/%1.svg").arg(symbol));
    if (requestedSize.isValid())
        reader.setScaledSize(requestedSize);
    QImage image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (!image.isNull()) {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), colour);
    }
    *size = image.size();
    return image;
}

} // namespace tamsel
