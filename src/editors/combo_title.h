#pragma once

#include <QString>
#include <QUrl>

#include <string>

namespace tamsel {

/// A combo's title as it is shown: without the Markdown link, "[text](address)" after a blank, that
/// it may end in. Where the address is none to open, the title is shown as it stands.
struct ComboTitle {
    QString text;
    QString linkText; ///< empty where there is no link
    QUrl link;

    static ComboTitle parse(const std::string& title);
};

} // namespace tamsel
