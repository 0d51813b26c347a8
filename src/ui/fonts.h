#pragma once

#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tamsel {

/// The window's fonts: the design's families, and the system's where those are not installed. No
/// family is looked up before it is drawn: a list of all that there are costs the first frame dear.
class Fonts final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit Fonts(QObject* parent = nullptr) : QObject(parent) {}

    /// `size` in pixels, `weight` of Font.
    Q_INVOKABLE static QFont sans(int size, int weight);
    Q_INVOKABLE static QFont mono(int size, int weight);
};

} // namespace tamsel
