#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace tamsel {

class Logger;
class ProcessRunner;

/// The process numbers in the process search's output: one a line, with blanks and tabs around it
/// allowed and everything else skipped; in their order. Output that is not UTF-8 has none.
QList<qint64> processNumbers(const QByteArray& output);

/// A script for the system's script runner that kills the processes with administrator rights.
QString killScript(const QList<qint64>& processes);

/// The text inside a script's string literal.
QString escapedForScript(QString text);

/// Finds the processes whose command line names the driver and kills them as administrator; logs
/// the outcome. Blocks while the two programs run (the second asks for a password): background
/// threads only.
void killStuckDext(const QString& driverBundleId, ProcessRunner& processes, Logger& logger);

} // namespace tamsel
