#pragma once

#include "records/records.h"

#include <QObject>

#include <functional>
#include <optional>

namespace tamsel {

class StorageMgr;

/// Where every editor works on the configuration: it loads what is stored, changes its own part,
/// and the desk saves the whole and lets it be sent. What is in force is the user's configuration
/// with the built-in records that it does not cover. Main thread.
class ConfigDesk final : public QObject {
    Q_OBJECT

public:
    /// Changes the configuration that it is given; false leaves everything as it is.
    using Edit = std::function<bool(Cfg&)>;

    /// `storage` outlives the desk.
    explicit ConfigDesk(StorageMgr& storage) : m_storage(storage) {}

    /// What is stored, without built-in records.
    Cfg load() const;
    Cfg inForce() const;

    /// Edits, saves and sends; gives what is stored then, or nothing when there was nothing to do.
    std::optional<Cfg> change(const Edit& edit);

signals:
    /// A changed configuration is in force and has to reach the daemon.
    void changed(const tamsel::Cfg& inForce);

private:
    StorageMgr& m_storage;
};

} // namespace tamsel
