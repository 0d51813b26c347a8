#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tamsel {

/// What stands on the cap of a key or modifier.
class KeyLegend final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit KeyLegend(QObject* parent = nullptr) : QObject(parent) {}

    /// Letters in upper case, the sign itself for punctuation keys and arrows, every other
    /// catalogue or modifier name with blanks and capitals, translated; any other text as it is.
    Q_INVOKABLE static QString of(const QString& name);
    Q_INVOKABLE static bool isModifier(const QString& name);
};

} // namespace tamsel
