#pragma once

#include "base/error.h"

#include <QString>

namespace tamsel {

/// Makes a key pair: the secret half in a new file that is its owner's alone. Returns the public
/// half.
Result<QString> makeKeyFile(const QString& file);

/// The secret half. Fails when others may read or change the file.
Result<QString> secretKeyIn(const QString& file);
/// The public half of the key in a file.
Result<QString> publicKeyIn(const QString& file);

} // namespace tamsel
