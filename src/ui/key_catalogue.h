#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QQmlEngine>

#include <cstdint>
#include <string_view>

namespace tamsel {

/// The keys that a key selector offers, in sections, as a list that a filter narrows by name. One
/// menu is open at a time, so the engine's one instance serves every selector.
class KeyCatalogue final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Case does not matter; blanks at the ends are ignored and inner ones stand for underscores.
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    Q_PROPERTY(int count READ count NOTIFY filterChanged)

public:
    enum Role { CodeRole = Qt::UserRole, NameRole, SectionRole };

    static KeyCatalogue* create(QQmlEngine* qmlEngine, QJSEngine* jsEngine);

    QString filter() const { return m_filter; }
    void setFilter(const QString& filter);
    int count() const { return int(m_shown.size()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// "section" is the translated title of the group.
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// The row that shows this code, or -1 where the filter hides it or no group has it.
    Q_INVOKABLE int indexOf(quint32 code) const;
    Q_INVOKABLE quint32 codeAt(int row) const;

signals:
    void filterChanged();

private:
    struct Entry {
        std::uint32_t code;
        QString name;
        QString section;
    };

    explicit KeyCatalogue(QObject* parent = nullptr);

    QList<Entry> m_entries;
    QList<qsizetype> m_shown; // rows of m_entries
    QString m_filter;
};

} // namespace tamsel
