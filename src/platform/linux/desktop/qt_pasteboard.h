#pragma once

#include "platform/main_queue.h"
#include "platform/pasteboard.h"

namespace tamsel {

/// The desktop's clipboard. On X11, another program's text is read on a worker thread over a
/// connection of its own, because the toolkit would wait many seconds for a frozen owner; texts
/// over 16 MiB and owners slower than 2 seconds count as no text.
class QtPasteboard final : public Pasteboard {
public:
    explicit QtPasteboard(MainQueue& queue) : m_queue(queue) {}

    void readText(TextHandler done) override;
    void clearContents() override;
    void setString(const QString& text) override;

private:
    MainQueue& m_queue;
};

} // namespace tamsel
