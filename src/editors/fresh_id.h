#pragma once

#include <QUuid>

#include <string>

namespace tamsel {

/// The id of a new record: a random UUID in upper-case canonical text.
inline std::string freshId() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

} // namespace tamsel
