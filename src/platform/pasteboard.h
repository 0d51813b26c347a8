#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tamsel {

/// The user's general clipboard, as plain text. Main thread.
class Pasteboard {
public:
    using TextHandler = std::function<void(std::optional<QString> text)>;

    virtual ~Pasteboard() = default;

    /// Reads the text and hands it to `done` on the main thread, at once or later; nothing when
    /// the clipboard holds no text. An owner that does not answer counts as none after a bounded
    /// wait; the main thread never blocks on it.
    virtual void readText(TextHandler done) = 0;
    virtual void clearContents() = 0;
    virtual void setString(const QString& text) = 0;
};

} // namespace tamsel
