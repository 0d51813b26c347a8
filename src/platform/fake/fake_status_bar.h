#pragma once

#include "platform/status_bar.h"

#include <QColor>
#include <QImage>
#include <QMap>

namespace tamsel {

/// A bar that holds one item at most; the test looks at it and clicks it.
class FakeStatusBar final : public StatusBar {
public:
    FakeStatusBar() {
        // One opaque pixel and one that is not part of the shape.
        QImage icon(2, 1, QImage::Format_ARGB32_Premultiplied);
        icon.fill(Qt::transparent);
        icon.setPixelColor(0, 0, Qt::black);
        images[QStringLiteral("MenuBarIcon")] = icon;
    }

    QMap<QString, QImage> images;
    StatusItem* item = nullptr; ///< null while the bar has none
    int made = 0;
    QImage shownImage;
    ImageKind shownKind = ImageKind::templateImage;
    QString toolTip;

    std::unique_ptr<StatusItem> makeItem() override { return std::make_unique<Item>(*this); }
    QImage imageNamed(const QString& name) const override { return images.value(name); }

    void click() const { Q_EMIT item->clicked(); }
    bool isRed() const {
        return shownKind == ImageKind::coloured && shownImage.pixelColor(0, 0).red() > 200 &&
               shownImage.pixelColor(1, 0).alpha() == 0;
    }

private:
    class Item final : public StatusItem {
    public:
        explicit Item(FakeStatusBar& bar) : m_bar(bar) {
            ++m_bar.made;
            m_bar.toolTip.clear();
            m_bar.item = this;
        }
        ~Item() override {
            if (m_bar.item == this)
                m_bar.item = nullptr;
        }
        void setImage(const QImage& image, ImageKind kind) override {
            m_bar.shownImage = image;
            m_bar.shownKind = kind;
        }
        void setToolTip(const QString& text) override { m_bar.toolTip = text; }

    private:
        FakeStatusBar& m_bar;
    };
};

} // namespace tamsel
