#include "platform/linux/qt_application.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace tamsel {

void QtApplication::terminate() {
    QMetaObject::invokeMethod(QCoreApplication::instance(), &QCoreApplication::quit,
                              Qt::QueuedConnection);
}

} // namespace tamsel
