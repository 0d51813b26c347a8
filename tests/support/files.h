#pragma once

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <optional>

namespace tamsel {

/// A file of these bytes, in folders that are made for it.
inline void writeFile(const QString& path, const QByteArray& bytes,
                      std::optional<QFile::Permissions> permissions = {}) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate)) << path.toStdString();
    file.write(bytes);
    if (permissions)
        file.setPermissions(*permissions);
}

} // namespace tamsel
