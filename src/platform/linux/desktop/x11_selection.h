#pragma once

#include <QByteArray>

#include <chrono>
#include <optional>

namespace tamsel {

/// The UTF-8 text of the X11 CLIPBOARD selection, read over a connection of its own; nothing when
/// there is none, its owner offers no text, sends more than `maxBytes`, or does not finish before
/// `timeout`. Blocks the calling thread for at most `timeout`.
std::optional<QByteArray> readX11Clipboard(std::chrono::milliseconds timeout, qsizetype maxBytes);

} // namespace tamsel
