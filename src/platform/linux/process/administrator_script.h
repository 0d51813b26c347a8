#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tamsel {

/// The process numbers of an administrator script, in decimal, when the script does nothing but
/// kill processes: `do shell script "COMMAND" with administrator privileges`, where COMMAND is one
/// or more `kill -9 NUMBER` joined by "; ". Numbers are from 2 to the kernel's greatest process
/// number, in plain digits. Nothing for any other text.
std::optional<QStringList> processesToKill(const QString& script);

} // namespace tamsel
