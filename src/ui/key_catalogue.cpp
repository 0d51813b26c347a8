#include "ui/key_catalogue.h"

#include "keys/key_codes.h"

#include <QCoreApplication>
#include <algorithm>

namespace tamsel {

namespace {

constexpr auto context = "KeyCatalogue";

// The titles of the catalogue's groups, named here for the translators.
[[maybe_unused]] constexpr const char* sectionTitles[] = {
    QT_TRANSLATE_NOOP("KeyCatalogue", "Letters"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Numbers"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Function Keys"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Modifiers"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Controls & Symbols"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Arrow & Navigation"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Keypad"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "PC Keys"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Media Keys"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "International"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Mouse Buttons"),
    QT_TRANSLATE_NOOP("KeyCatalogue", "Other"),
};

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

} // namespace

KeyCatalogue* KeyCatalogue::create(QQmlEngine*, QJSEngine*) {
    return new KeyCatalogue; // the engine owns it
}

KeyCatalogue::KeyCatalogue(QObject* parent) : QAbstractListModel(parent) {
    for (const KeyGroup& group : KeyCodes::selectorGroups()) {
        const QString section =
            QCoreApplication::translate(context, toQString(group.title).toUtf8().constData());
        for (const KeyCodeDef& key : group.keys) {
            m_shown.append(m_entries.size());
            m_entries.append({key.code, toQString(key.name), section});
        }
    }
}

void KeyCatalogue::setFilter(const QString& filter) {
    if (m_filter == filter)
        return;
    m_filter = filter;
    const QString wanted = filter.trimmed().replace(u' ', u'_');
    beginResetModel();
    m_shown.clear();
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].name.contains(wanted, Qt::CaseInsensitive))
            m_shown.append(i);
    }
    endResetModel();
    Q_EMIT filterChanged();
}

int KeyCatalogue::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant KeyCatalogue::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Entry& entry = m_entries[m_shown[index.row()]];
    switch (role) {
    case CodeRole:
        return entry.code;
    case NameRole:
        return entry.name;
    case SectionRole:
        return entry.section;
    default:
        return {};
    }
}

QHash<int, QByteArray> KeyCatalogue::roleNames() const {
    return {{CodeRole, "code"}, {NameRole, "name"}, {SectionRole, "section"}};
}

int KeyCatalogue::indexOf(quint32 code) const {
    const auto row = std::find_if(m_shown.cbegin(), m_shown.cend(),
                                  [&](qsizetype i) { return m_entries[i].code == code; });
    return row == m_shown.cend() ? -1 : int(row - m_shown.cbegin());
}

quint32 KeyCatalogue::codeAt(int row) const {
    return row >= 0 && row < count() ? m_entries[m_shown[row]].code : 0;
}

} // namespace tamsel
