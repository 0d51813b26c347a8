#pragma once

#include <functional>
#include <optional>
#include <string>

namespace tamsel {

/// What a combo sets off outside the keyboard. Nothing waits and nothing is reported back: what
/// fails is the runner's to complain of, never with a command or a text.
class ActionRunner {
public:
    /// The clipboard's text; nothing when it holds none or nobody could be asked.
    using ClipboardText = std::function<void(std::optional<std::string> text)>;

    virtual ~ActionRunner() = default;

    virtual void runCommand(const std::string& command) = 0;
    virtual void openURL(const std::string& url) = 0;
    /// `done` is called at most once, soon or never.
    virtual void requestClipboardText(ClipboardText done) = 0;
};

} // namespace tamsel
