#pragma once

#include "records/records.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <vector>

namespace tamsel {

class ConfigDesk;

/// One row of the mapping screen. Codes are codes of KeyCodes, 0 where no key is chosen; names are
/// the catalogue's, empty for no key.
struct MappingRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(bool enabled MEMBER enabled)
    Q_PROPERTY(quint32 fromCode MEMBER fromCode)
    Q_PROPERTY(QString fromName MEMBER fromName)
    Q_PROPERTY(quint32 toCode MEMBER toCode)
    Q_PROPERTY(QString toName MEMBER toName)

public:
    QString id;
    bool enabled = false;
    quint32 fromCode = 0;
    QString fromName;
    quint32 toCode = 0;
    QString toName;

    bool operator==(const MappingRow&) const = default;
};

/// The mapping screen's model: the user's mappings, and below them the built-in ones that they do
/// not cover. Main thread only.
class MappingVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tamsel::MappingRow> userRows READ userRows NOTIFY rowsChanged)
    Q_PROPERTY(QList<tamsel::MappingRow> builtInRows READ builtInRows NOTIFY rowsChanged)

public:
    explicit MappingVM(ConfigDesk& desk, QObject* parent = nullptr);

    const QList<MappingRow>& userRows() const { return m_userRows; }
    const QList<MappingRow>& builtInRows() const { return m_builtInRows; }

    /// Reads the store again; the screen calls it each time it is shown.
    Q_INVOKABLE void reload();
    /// Inserts an enabled, empty mapping at the top; returns its id.
    Q_INVOKABLE QString addMapping();
    Q_INVOKABLE void deleteMapping(const QString& id);
    /// Each returns the id of the row that shows the change: a change of a built-in row promotes it
    /// to the top of the user's rows. Only turning one off leaves it what and where it is.
    Q_INVOKABLE QString setEnabled(const QString& id, bool enabled);
    /// Replace a row's source or target by a plain key without modifiers.
    Q_INVOKABLE QString setFrom(const QString& id, quint32 keyCode);
    Q_INVOKABLE QString setTo(const QString& id, quint32 keyCode);

signals:
    void rowsChanged();

private:
    enum class BuiltIn { isPromoted, stays };

    /// Applies `edit` to the mapping with this id; nothing happens when there is none.
    QString changeRow(const QString& id, BuiltIn builtIn,
                      const std::function<void(KeyMapping&)>& edit);
    void change(const std::function<bool(Cfg&)>& edit);
    void show(const Cfg& cfg);

    ConfigDesk& m_desk;
    QList<MappingRow> m_userRows;
    QList<MappingRow> m_builtInRows;
};

} // namespace tamsel
