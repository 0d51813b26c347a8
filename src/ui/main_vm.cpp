#include "ui/main_vm.h"

#include <QHash>

namespace tamsel {

MainVM::MainVM(QObject* parent) : QObject(parent) {}

void MainVM::select(MenuItem item) {
    if (m_selected == item)
        return;
    m_selected = item;
    emit selectedChanged();
}

void MainVM::navigate(const QString& pageName) {
    static const QHash<QString, MenuItem> pages{
        {QStringLiteral(""), Dashboard},         {QStringLiteral("dashboard"), Dashboard},
        {QStringLiteral("dash"), Dashboard},     {QStringLiteral("mapping"), Mapping},
        {QStringLiteral("map"), Mapping},        {QStringLiteral("combo"), Combo},
        {QStringLiteral("shortcut"), Combo},     {QStringLiteral("devices"), Devices},
        {QStringLiteral("device"), Devices},     {QStringLiteral("about"), About},
        {QStringLiteral("settings"), About},
    };
    const auto page = pages.constFind(pageName.toLower());
    if (page != pages.cend())
        select(*page);
}

} // namespace tamsel
