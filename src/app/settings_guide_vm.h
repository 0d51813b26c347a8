#pragma once

#include "app/settings_guide.h"
#include "platform/settings_panes.h"

#include <optional>

namespace tamsel {

class DaemonMgr;
class MachineInspector;
class Pasteboard;
class SystemExtensionMgr;

/// The settings panes that this system does not have, as a guide inside the window: what the
/// machine lacks, the commands that help, and the button that does the same with the user's
/// permission. It looks at the machine whenever it is opened and whenever something has changed.
/// Main thread.
class SettingsGuideVM final : public QObject, public SettingsPanes {
    Q_OBJECT
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(bool isLooking READ isLooking NOTIFY guideChanged)
    Q_PROPERTY(QString title READ title NOTIFY guideChanged)
    Q_PROPERTY(QList<tamsel::GuideFinding> findings READ findings NOTIFY guideChanged)
    Q_PROPERTY(QList<tamsel::GuideStep> steps READ steps NOTIFY guideChanged)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY guideChanged)

public:
    /// All of it outlives the guide.
    SettingsGuideVM(MachineInspector& machine, DaemonMgr& daemonMgr, SystemExtensionMgr& sysExtMgr,
                    Pasteboard& pasteboard, QObject* parent = nullptr);

    int systemVersion() const override { return 15; }
    void open(QStringView pane) override;
    void openLoginItems() override { show(GuidePane::loginItems); }

    bool isOpen() const { return m_pane.has_value(); }
    /// It waits for the first look at the machine.
    bool isLooking() const { return isOpen() && !m_guide; }
    QString title() const { return m_guide ? m_guide->title : QString(); }
    QList<GuideFinding> findings() const;
    QList<GuideStep> steps() const;
    /// What the button says; empty without one.
    QString actionTitle() const;

    Q_INVOKABLE void close();
    Q_INVOKABLE void lookAgain();
    Q_INVOKABLE void act();
    /// Puts a step's command on the clipboard.
    Q_INVOKABLE void copy(const QString& stepId);

signals:
    void isOpenChanged();
    void guideChanged();

private:
    void show(GuidePane pane);

    MachineInspector& m_machine;
    DaemonMgr& m_daemonMgr;
    SystemExtensionMgr& m_sysExtMgr;
    Pasteboard& m_pasteboard;
    std::optional<GuidePane> m_pane;
    std::optional<SettingsGuide> m_guide;
};

} // namespace tamsel
