#include "platform/linux/desktop/application_adaptor.h"

#include "platform/linux/desktop/single_instance.h"

namespace tamsel {

namespace {

void takeActivationToken(const QVariantMap& data) {
    if (const auto token = data.value(QStringLiteral("activation-token")).toString();
        !token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

} // namespace

ApplicationAdaptor::ApplicationAdaptor(SingleInstance& instance)
    : QDBusAbstractAdaptor(&instance), m_instance(instance) {}

void ApplicationAdaptor::Activate(const QVariantMap& data) {
    takeActivationToken(data);
    Q_EMIT m_instance.openedAgain({});
}

void ApplicationAdaptor::Open(const QStringList& uris, const QVariantMap& data) {
    takeActivationToken(data);
    Q_EMIT m_instance.openedAgain(uris);
}

void ApplicationAdaptor::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                        const QVariantMap& /*data*/) {
    if (action == u"quit")
        Q_EMIT m_instance.quitRequested();
}

} // namespace tamsel
