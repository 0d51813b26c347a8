#pragma once

#include <QObject>

#include <cstdint>
#include <memory>

class QImage;

namespace tamsel {

/// How a picture in the menu bar is drawn: a template in the bar's own colour, any other as it is.
enum class ImageKind : std::uint8_t { templateImage, coloured };

/// An icon in the desktop's menu bar; destroying it takes it away. It may be made before there is
/// a bar, and shows as soon as one is there. Main thread.
class StatusItem : public QObject {
    Q_OBJECT

public:
    /// A null image leaves the item without one.
    virtual void setImage(const QImage& image, ImageKind kind) = 0;
    /// What the item says beyond the application's name, plain text; empty when it is nothing.
    virtual void setToolTip(const QString& text) = 0;

signals:
    /// The user has pressed it. It may be destroyed by who hears that.
    void clicked();
};

/// The desktop's menu bar, panel or tray. Main thread.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// A new item without an image; never null.
    virtual std::unique_ptr<StatusItem> makeItem() = 0;
    /// One of the bundle's pictures, in a size that suits the bar; null when it is missing.
    virtual QImage imageNamed(const QString& name) const = 0;
};

} // namespace tamsel
