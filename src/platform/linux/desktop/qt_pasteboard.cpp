#include "platform/linux/desktop/qt_pasteboard.h"

#include "platform/linux/desktop/x11_selection.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QThreadPool>

namespace tamsel {

namespace {

constexpr std::chrono::milliseconds readTimeout{2000};
constexpr qsizetype maxTextBytes = qsizetype{16} * 1024 * 1024;

} // namespace

void QtPasteboard::readText(TextHandler done) {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    if (QGuiApplication::platformName() != u"xcb" || clipboard->ownsClipboard()) {
        const QMimeData* contents = clipboard->mimeData();
        done(contents && contents->hasText() ? std::optional(contents->text()) : std::nullopt);
        return;
    }
    QThreadPool::globalInstance()->start([&queue = m_queue, done = std::move(done)] {
        const auto utf8 = readX11Clipboard(readTimeout, maxTextBytes);
        queue.async(nullptr, [done, text = utf8 ? std::optional(QString::fromUtf8(*utf8))
                                                : std::nullopt] { done(text); });
    });
}

void QtPasteboard::clearContents() {
    QGuiApplication::clipboard()->clear();
}

void QtPasteboard::setString(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

} // namespace tamsel
