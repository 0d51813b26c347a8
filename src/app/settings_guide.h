#pragma once

#include <QList>
#include <QObject>
#include <QString>

namespace tamsel {

struct MachineReport;

/// One thing that the guide has looked at; the text is translated.
struct GuideFinding {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(bool ok MEMBER ok)
    Q_PROPERTY(QString text MEMBER text)

public:
    QString id;
    bool ok = false;
    QString text;

    bool operator==(const GuideFinding&) const = default;
};

/// One thing to do. `command` is for a terminal; empty where no command does it.
struct GuideStep {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString command MEMBER command)

public:
    QString id;
    QString text;
    QString command;

    bool operator==(const GuideStep&) const = default;
};

/// The three panes that this system's settings lack, so that a guide stands in.
enum class GuidePane { extensions, inputMonitoring, loginItems };

/// What the guide's button does through the authorization prompt.
enum class GuideAction { none, loadDriver, registerServices };

struct SettingsGuide {
    QString title = {};
    QList<GuideFinding> findings = {};
    QList<GuideStep> steps = {}; ///< empty when there is nothing left to do
    GuideAction action = GuideAction::none;
};

/// The daemon's service as the guide sees it.
struct ServiceFacts {
    bool isRunning = false;
    bool needsApproval = false;
};

SettingsGuide settingsGuide(GuidePane pane, const MachineReport& machine,
                            const ServiceFacts& service);

/// A word as one argument of a shell command.
QString shellQuoted(const QString& word);

} // namespace tamsel
