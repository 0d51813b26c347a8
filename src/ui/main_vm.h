#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tamsel {

/// The main window's own state: which screen the sidebar shows. Main thread only.
class MainVM final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(MenuItem selected READ selected WRITE select NOTIFY selectedChanged)

public:
    /// The sidebar's entries in its order; digit n of the keyboard chooses the n-th.
    enum MenuItem { Dashboard, Mapping, Combo, Devices, About };
    Q_ENUM(MenuItem)

    explicit MainVM(QObject* parent = nullptr);

    MenuItem selected() const { return m_selected; }
    void select(MenuItem item);

    /// Chooses the screen that an application URL names, whatever the name's case; "" is the
    /// dashboard. A name that no screen has leaves the selection as it is.
    Q_INVOKABLE void navigate(const QString& pageName);

signals:
    void selectedChanged();

private:
    MenuItem m_selected = Dashboard;
};

} // namespace tamsel
