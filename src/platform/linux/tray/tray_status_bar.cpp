#include "platform/linux/tray/tray_status_bar.h"

#include "platform/bundle.h"
#include "platform/linux/tray/status_notifier_item.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QPalette>

namespace tamsel {

namespace {

constexpr int imageSize = 64; // as large as panels ask for

/// The colour of the tray's own texts, as near as anybody can tell.
QColor trayInk() {
    const bool isGnome = qgetenv("XDG_CURRENT_DESKTOP").toUpper().contains("GNOME");
    const bool isDark =
        isGnome || QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    return isDark ? QColor(0xEF, 0xF0, 0xF1) : QColor(0x23, 0x26, 0x29);
}

QImage tinted(const QImage& shape) {
    if (shape.isNull())
        return shape;
    QImage out = shape.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&out);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(out.rect(), trayInk());
    return out;
}

} // namespace

class TrayStatusBar::Item final : public StatusItem {
public:
    explicit Item(TrayStatusBar& bar) : m_bar(bar) {
        m_bar.m_item = this;
        connect(&m_bar.m_host, &StatusNotifierHost::changed, this, &Item::settle);
        connect(&m_bar.m_xembed, &XembedTray::changed, this, &Item::settle);
        connect(&m_bar.m_xembed, &XembedTray::clicked, this, &StatusItem::clicked);
        m_bar.m_xembed.setToolTip({});
        settle();
    }
    ~Item() override {
        if (m_bar.m_item == this) {
            m_bar.m_item = nullptr;
            m_bar.m_xembed.hide();
        }
    }

    void setImage(const QImage& image, ImageKind kind) override {
        m_image = kind == ImageKind::templateImage ? tinted(image) : image;
        draw();
    }
    void setToolTip(const QString& text) override {
        m_toolTip = text;
        m_bar.m_xembed.setToolTip(text);
        if (m_notifier)
            m_notifier->setToolTip(text);
    }

private:
    /// Takes the place where items are shown now.
    void settle() {
        if (m_bar.m_host.isThere()) {
            m_bar.m_xembed.hide();
            if (!m_notifier) {
                m_notifier = std::make_unique<StatusNotifierItem>();
                connect(m_notifier.get(), &StatusNotifierItem::activated, this,
                        &StatusItem::clicked);
                m_notifier->setToolTip(m_toolTip);
            }
            draw();
            m_notifier->announce();
        } else {
            m_notifier.reset();
            draw();
        }
    }
    void draw() {
        if (m_notifier)
            m_notifier->setImage(m_image);
        else
            m_bar.m_xembed.show(m_image);
    }

    TrayStatusBar& m_bar;
    std::unique_ptr<StatusNotifierItem> m_notifier;
    QImage m_image;
    QString m_toolTip;
};

TrayStatusBar::TrayStatusBar(const Bundle& bundle)
    : m_bundle(bundle), m_host(QDBusConnection::sessionBus()) {
    connect(&m_host, &StatusNotifierHost::changed, this, &TrayStatusBar::trayChanged);
    connect(&m_xembed, &XembedTray::changed, this, &TrayStatusBar::trayChanged);
}

TrayStatusBar::~TrayStatusBar() = default;

std::unique_ptr<StatusItem> TrayStatusBar::makeItem() {
    return std::make_unique<Item>(*this);
}

QImage TrayStatusBar::imageNamed(const QString& name) const {
    const auto path = m_bundle.pathForResource(name, QStringLiteral("svg"));
    if (!path)
        return {};
    QImageReader reader(*path);
    reader.setScaledSize({imageSize, imageSize});
    return reader.read();
}

} // namespace tamsel
