#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QMetaProperty>
#include <QPointer>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tamsel {

/// A list model over the QList<Gadget> property `list` of the object `source`, for views that must
/// not rebuild the rows that did not change. It reads the list again on the property's notify
/// signal and tells its views only what became different; rows are the same row when their `key`
/// fields are equal.
///
/// Roles: "row" is the whole gadget, and each of its fields has a role of its own name.
class GadgetListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QObject* source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(QString list READ list WRITE setList NOTIFY listChanged)
    Q_PROPERTY(QString key READ key WRITE setKey NOTIFY keyChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { RowRole = Qt::UserRole, FirstFieldRole };

    explicit GadgetListModel(QObject* parent = nullptr);

    /// Not owned; when it dies the model becomes empty.
    QObject* source() const { return m_source; }
    void setSource(QObject* source);
    QString list() const { return m_listName; }
    void setList(const QString& list);
    QString key() const { return m_key; }
    void setKey(const QString& key);

    int count() const { return int(m_rows.size()); }
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The row with this key, or -1.
    Q_INVOKABLE int indexOf(const QString& key) const;

signals:
    void sourceChanged();
    void listChanged();
    void keyChanged();
    void countChanged();

private slots:
    void refresh();

private:
    struct Row {
        QString key;
        QVariant gadget;
    };
    using Ranks = QHash<QString, qsizetype>;

    void connectSource();
    QList<Row> read();
    void removeGone(const Ranks& ranks);
    void moveDisplaced(const Ranks& ranks, const QList<bool>& inPlace);
    void insertNew(const QList<Row>& fresh);
    void updateChanged(const QList<Row>& fresh);
    void removeSpan(int first, int last);

    QPointer<QObject> m_source;
    QString m_listName;
    QString m_key;
    QMetaProperty m_list;
    QMetaObject::Connection m_notify;
    QMetaObject::Connection m_death;
    const QMetaObject* m_gadget = nullptr;
    QList<Row> m_rows;
};

} // namespace tamsel
