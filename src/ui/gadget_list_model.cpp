#include "ui/gadget_list_model.h"

#include <QMap>
#include <QMetaMethod>
#include <QSequentialIterable>
#include <algorithm>

namespace tamsel {

namespace {

// Above this many displaced rows a real move of each is no longer linear; they are then taken out
// and put in again.
constexpr qsizetype maxMoves = 8;

/// The positions of a longest increasing run of `ranks`, as marks; what is not marked is displaced.
QList<bool> longestIncreasing(const QList<qsizetype>& ranks) {
    QList<qsizetype> tails; // indices into ranks; tails[n] ends the best run of length n + 1
    QList<qsizetype> previous(ranks.size(), -1);
    for (qsizetype i = 0; i < ranks.size(); ++i) {
        const auto place =
            std::lower_bound(tails.begin(), tails.end(), ranks[i],
                             [&](qsizetype tail, qsizetype rank) { return ranks[tail] < rank; });
        if (place != tails.begin())
            previous[i] = *(place - 1);
        if (place == tails.end())
            tails.append(i);
        else
            *place = i;
    }
    QList<bool> marks(ranks.size(), false);
    for (qsizetype i = tails.isEmpty() ? -1 : tails.last(); i >= 0; i = previous[i])
        marks[i] = true;
    return marks;
}

} // namespace

GadgetListModel::GadgetListModel(QObject* parent) : QAbstractListModel(parent) {}

void GadgetListModel::setSource(QObject* source) {
    if (m_source == source)
        return;
    m_source = source;
    connectSource();
    Q_EMIT sourceChanged();
}

void GadgetListModel::setList(const QString& list) {
    if (m_listName == list)
        return;
    m_listName = list;
    connectSource();
    Q_EMIT listChanged();
}

void GadgetListModel::setKey(const QString& key) {
    if (m_key == key)
        return;
    m_key = key;
    connectSource();
    Q_EMIT keyChanged();
}

int GadgetListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant GadgetListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QVariant& gadget = m_rows[index.row()].gadget;
    if (role == RowRole)
        return gadget;
    const int field = role - FirstFieldRole;
    if (!m_gadget || field < 0 || field >= m_gadget->propertyCount())
        return {};
    return m_gadget->property(field).readOnGadget(gadget.constData());
}

QHash<int, QByteArray> GadgetListModel::roleNames() const {
    QHash<int, QByteArray> names{{RowRole, "row"}};
    for (int field = 0; m_gadget && field < m_gadget->propertyCount(); ++field)
        names.insert(FirstFieldRole + field, m_gadget->property(field).name());
    return names;
}

int GadgetListModel::indexOf(const QString& key) const {
    const auto row = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                  [&](const Row& candidate) { return candidate.key == key; });
    return row == m_rows.cend() ? -1 : int(row - m_rows.cbegin());
}

void GadgetListModel::connectSource() {
    disconnect(m_notify);
    disconnect(m_death);
    m_list = {};
    beginResetModel();
    m_rows.clear();
    m_gadget = nullptr;
    if (m_source && !m_listName.isEmpty() && !m_key.isEmpty()) {
        const QMetaObject* type = m_source->metaObject();
        m_list = type->property(type->indexOfProperty(m_listName.toUtf8().constData()));
        if (!m_list.isValid())
            qWarning("%s has no list \"%s\"", type->className(), qUtf8Printable(m_listName));
        m_rows = read();
        const QMetaMethod refreshSlot =
            metaObject()->method(metaObject()->indexOfSlot("refresh()"));
        if (m_list.hasNotifySignal())
            m_notify = connect(m_source, m_list.notifySignal(), this, refreshSlot);
        m_death = connect(m_source, &QObject::destroyed, this, [this] {
            // m_source is null by now.
            connectSource();
            Q_EMIT sourceChanged();
        });
    }
    endResetModel();
    Q_EMIT countChanged();
}

QList<GadgetListModel::Row> GadgetListModel::read() {
    if (!m_list.isValid())
        return {};
    m_list.metaType().id(); // registers the list's conversion to a sequence
    const QVariant value = m_list.read(m_source);
    const auto sequence = value.value<QSequentialIterable>();
    m_gadget = sequence.metaContainer().valueMetaType().metaObject();
    if (!m_gadget)
        return {};
    const QMetaProperty identity =
        m_gadget->property(m_gadget->indexOfProperty(m_key.toUtf8().constData()));
    QList<Row> rows;
    rows.reserve(sequence.size());
    QHash<QString, int> seen;
    for (const QVariant& row : sequence) {
        QString key = identity.readOnGadget(row.constData()).toString();
        // Equal keys would be one row to the comparison; the later ones get a number.
        if (const int before = seen[key]++; before > 0)
            key += QChar(u'\x1f') + QString::number(before);
        rows.append({key, row});
    }
    return rows;
}

void GadgetListModel::refresh() {
    const QList<Row> fresh = read();
    Ranks ranks;
    ranks.reserve(fresh.size());
    for (qsizetype i = 0; i < fresh.size(); ++i)
        ranks.insert(fresh[i].key, i);
    const int before = count();
    removeGone(ranks);
    QList<qsizetype> order;
    order.reserve(m_rows.size());
    for (const Row& row : std::as_const(m_rows))
        order.append(ranks.value(row.key));
    const QList<bool> inPlace = longestIncreasing(order);
    if (inPlace.count(false) <= maxMoves) {
        moveDisplaced(ranks, inPlace);
    } else {
        for (int i = count() - 1; i >= 0; --i) {
            if (!inPlace[i])
                removeSpan(i, i);
        }
    }
    insertNew(fresh);
    updateChanged(fresh);
    if (count() != before)
        Q_EMIT countChanged();
}

void GadgetListModel::removeSpan(int first, int last) {
    beginRemoveRows({}, first, last);
    m_rows.remove(first, last - first + 1);
    endRemoveRows();
}

void GadgetListModel::removeGone(const Ranks& ranks) {
    for (int last = count() - 1; last >= 0; --last) {
        if (ranks.contains(m_rows[last].key))
            continue;
        int first = last;
        while (first > 0 && !ranks.contains(m_rows[first - 1].key))
            --first;
        removeSpan(first, last);
        last = first;
    }
}

void GadgetListModel::moveDisplaced(const Ranks& ranks, const QList<bool>& inPlace) {
    QMap<qsizetype, QString> displaced; // by the rank they go to
    for (int i = 0; i < count(); ++i) {
        if (!inPlace[i])
            displaced.insert(ranks.value(m_rows[i].key), m_rows[i].key);
    }
    while (!displaced.isEmpty()) {
        const qsizetype rank = displaced.firstKey();
        const int from = indexOf(displaced.take(rank));
        // Rows that still wait for their own move say nothing about where this one belongs.
        int to = 0;
        for (int i = 0; i < count(); ++i) {
            const qsizetype other = ranks.value(m_rows[i].key);
            if (other < rank && !displaced.contains(other))
                to = i + 1;
        }
        if (to == from || to == from + 1)
            continue;
        beginMoveRows({}, from, from, {}, to);
        m_rows.move(from, to > from ? to - 1 : to);
        endMoveRows();
    }
}

void GadgetListModel::insertNew(const QList<Row>& fresh) {
    for (qsizetype first = 0; first < fresh.size(); ++first) {
        // What is here now stands in the new order, so a row that differs is missing.
        const auto present = [&](qsizetype i) {
            return first < m_rows.size() && m_rows[first].key == fresh[i].key;
        };
        if (present(first))
            continue;
        qsizetype last = first;
        while (last + 1 < fresh.size() && !present(last + 1))
            ++last;
        beginInsertRows({}, int(first), int(last));
        m_rows.insert(first, last - first + 1, Row{});
        std::copy(fresh.cbegin() + first, fresh.cbegin() + last + 1, m_rows.begin() + first);
        endInsertRows();
        first = last;
    }
}

void GadgetListModel::updateChanged(const QList<Row>& fresh) {
    for (int i = 0; i < count(); ++i) {
        if (m_rows[i].gadget == fresh[i].gadget)
            continue;
        m_rows[i].gadget = fresh[i].gadget;
        Q_EMIT dataChanged(index(i), index(i));
    }
}

} // namespace tamsel
