#pragma once

#include "platform/linux/tray/status_notifier_host.h"
#include "platform/linux/tray/xembed_tray.h"
#include "platform/status_bar.h"

namespace tamsel {

class Bundle;

/// The desktop's tray: a panel that shows status notifier items, else the X server's own tray.
/// Items take whichever is there, also when it comes late or comes again.
class TrayStatusBar final : public QObject, public StatusBar {
    Q_OBJECT

public:
    explicit TrayStatusBar(const Bundle& bundle);
    ~TrayStatusBar() override;

    std::unique_ptr<StatusItem> makeItem() override;
    QImage imageNamed(const QString& name) const override;

    /// An item is there, and a tray to show it.
    bool showsItem() const { return m_item && (m_host.isThere() || m_xembed.isThere()); }

signals:
    /// What showsItem() says may have changed; not emitted for items that come and go.
    void trayChanged();

private:
    class Item;

    const Bundle& m_bundle;
    StatusNotifierHost m_host;
    XembedTray m_xembed;
    Item* m_item = nullptr; ///< the newest
};

} // namespace tamsel
