#include "editors/combo_title.h"

#include "config/text_rules.h"

namespace tamsel {

ComboTitle ComboTitle::parse(const std::string& title) {
    const QString whole = QString::fromStdString(title);
    ComboTitle plain{whole, {}, {}};
    const qsizetype open = whole.lastIndexOf(QLatin1String(" ["));
    const qsizetype middle = open < 0 ? -1 : whole.indexOf(QLatin1String("]("), open);
    if (middle < 0 || !whole.endsWith(u')'))
        return plain;
    const QString linkText = whole.mid(open + 2, middle - open - 2);
    const auto link = openableURL(whole.mid(middle + 2, whole.size() - middle - 3));
    if (linkText.isEmpty() || !link)
        return plain;
    return {whole.left(open), linkText, *link};
}

} // namespace tamsel
