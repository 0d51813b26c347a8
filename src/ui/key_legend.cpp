#include "ui/key_legend.h"

#include "keys/key_codes.h"
#include "keys/modifier_names.h"

#include <QHash>

namespace tamsel {

namespace {

const QHash<QString, QString>& signs() {
    static const QHash<QString, QString> all{
        {QStringLiteral("hyphen"), QStringLiteral("-")},
        {QStringLiteral("equal_sign"), QStringLiteral("=")},
        {QStringLiteral("open_bracket"), QStringLiteral("[")},
        {QStringLiteral("close_bracket"), QStringLiteral("]")},
        {QStringLiteral("backslash"), QStringLiteral("\\")},
        {QStringLiteral("non_us_pound"), QStringLiteral("#")},
        {QStringLiteral("semicolon"), QStringLiteral(";")},
        {QStringLiteral("quote"), QStringLiteral("'")},
        {QStringLiteral("grave_accent_and_tilde"), QStringLiteral("`")},
        {QStringLiteral("comma"), QStringLiteral(",")},
        {QStringLiteral("period"), QStringLiteral(".")},
        {QStringLiteral("slash"), QStringLiteral("/")},
        {QStringLiteral("left_arrow"), QStringLiteral("←")},
        {QStringLiteral("right_arrow"), QStringLiteral("→")},
        {QStringLiteral("up_arrow"), QStringLiteral("↑")},
        {QStringLiteral("down_arrow"), QStringLiteral("↓")},
    };
    return all;
}

QString capitalised(const QString& name) {
    QString legend = name;
    for (qsizetype i = 0; i < legend.size(); ++i) {
        if (legend[i] == u'_')
            legend[i] = u' ';
        else if (i == 0 || legend[i - 1] == u' ')
            legend[i] = legend[i].toUpper();
    }
    return legend;
}

} // namespace

QString KeyLegend::of(const QString& name) {
    if (const auto sign = signs().constFind(name); sign != signs().cend())
        return *sign;
    if (!isModifier(name) && !KeyCodes::find(name.toStdString()))
        return name;
    return tr(capitalised(name).toUtf8().constData());
}

bool KeyLegend::isModifier(const QString& name) {
    const std::string text = name.toStdString();
    return modifierNames::indexOfKey(text) || modifierNames::indexOfGeneric(text);
}

} // namespace tamsel
