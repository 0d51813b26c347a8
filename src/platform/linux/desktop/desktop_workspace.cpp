#include "platform/linux/desktop/desktop_workspace.h"

#include "platform/linux/process/child_process.h"

namespace tamsel {

namespace {

/// The exit statuses that xdg-open documents.
std::string explain(int status) {
    switch (status) {
    case 2:
        return "the file does not exist";
    case 3:
        return "a required tool is missing, or nothing handles this kind of URL";
    case 4:
        return "the action failed";
    default:
        return "xdg-open ended with status " + std::to_string(status);
    }
}

} // namespace

void DesktopWorkspace::openURL(const QUrl& url, std::function<void(Result<void>)> done) {
    const auto started = startDetachedChild(
        QStringLiteral("xdg-open"), {QString::fromUtf8(url.toEncoded())}, this,
        [done](int status) { done(status == 0 ? Result<void>{} : fail(explain(status))); });
    if (!started)
        QMetaObject::invokeMethod(
            this, [done, error = started.error()] { done(tl::unexpected(error)); },
            Qt::QueuedConnection);
}

} // namespace tamsel
