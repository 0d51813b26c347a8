#pragma once

#include "words.h"

#include <poll.h>

/// A client of the daemon's socket, as the application is one.
namespace vm::bus {

/// connect PATH; again after the daemon was started anew.
std::string connect(const Words& words);
/// call METHOD [HEX]: the answer's values divided by blanks, bytes as text. The key viewer's events
/// come as "@key usage down action output".
std::string call(const Words& words);

/// -1 without a connection.
int fd();
void process();

} // namespace vm::bus
