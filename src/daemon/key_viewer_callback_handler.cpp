#include "daemon/key_viewer_callback_handler.h"

#include "config/text_rules.h"
#include "log/logger.h"
#include "platform/clock.h"
#include "platform/main_queue.h"
#include "platform/pasteboard.h"
#include "platform/workspace.h"

#include <QUrl>

namespace tamsel {

void KeyViewerCallbackHandler::onKeyEvent(const KeyEvent& event) {
    m_services.queue.async(this, [this, event] {
        // A listener may take itself off while it runs.
        if (const EventHandler onEvent = m_onEvent)
            onEvent(event);
    });
}

// Clipboard and URL requests are answered even when the connection has moved on to another handler
// meanwhile, so their tasks hold the services, not this object.

void KeyViewerCallbackHandler::requestClipboardText(ClipboardReply reply) {
    m_services.queue.async(nullptr, [services = m_services, reply = std::move(reply)] {
        services.pasteboard.readText([services, reply](const std::optional<QString>& text) {
            services.logger.info(QStringLiteral("[DaemonXPC] 已回覆剪貼簿文字請求（chars=%1）")
                                     .arg(text ? characterCount(*text) : 0));
            reply(text ? std::optional(text->toStdString()) : std::nullopt);
        });
    });
}

void KeyViewerCallbackHandler::openURL(std::string url, double deadline, BoolReply reply) {
    m_services.queue.async(nullptr, [services = m_services, text = QString::fromStdString(url),
                                     deadline, reply = std::move(reply)] {
        Logger& logger = services.logger;
        // Written so that a deadline that is not a number has passed as well.
        if (!(deadline > services.clock.systemUptime())) {
            logger.warning(QStringLiteral("[DaemonXPC] openURL 請求已過期，跳過（防雙開）"));
            reply(false);
            return;
        }
        const auto openable = openableURL(text);
        if (!openable) {
            logger.error(QStringLiteral("[DaemonXPC] openURL 非法 URL，拒絕"));
            reply(false);
            return;
        }
        services.workspace.openURL(*openable, [&logger](const Result<void>& opened) {
            if (!opened)
                logger.error(QStringLiteral("[DaemonXPC] openURL 打開失敗: ") +
                             QString::fromStdString(opened.error().description()));
        });
        logger.info(QStringLiteral("[DaemonXPC] openURL 已執行"));
        reply(true);
    });
}

} // namespace tamsel
