#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

namespace tamsel {

class SingleInstance;

/// org.freedesktop.Application of the one instance: what desktops and other starts ask of it. The
/// slots' names are the interface's.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Owned by the instance.
    explicit ApplicationAdaptor(SingleInstance& instance);

public slots:
    void Activate(const QVariantMap& data);
    void Open(const QStringList& uris, const QVariantMap& data);
    void ActivateAction(const QString& action, const QVariantList& parameters,
                        const QVariantMap& data);

private:
    SingleInstance& m_instance;
};

} // namespace tamsel
