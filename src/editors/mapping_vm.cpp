#include "editors/mapping_vm.h"

#include "config/default_config.h"
#include "keys/key_codes.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "editors/fresh_id.h"

#include <algorithm>

namespace tamsel {

namespace {

QString keyName(quint32 code) {
    return code == KeyCodes::noKey ? QString() : QString::fromStdString(KeyCodes::name(code));
}

QList<MappingRow> rows(const std::vector<KeyMapping>& mappings) {
    QList<MappingRow> out;
    out.reserve(static_cast<qsizetype>(mappings.size()));
    for (const KeyMapping& mapping : mappings)
        out.append({QString::fromStdString(mapping.id), mapping.enabled, mapping.from.keyCode,
                    keyName(mapping.from.keyCode), mapping.to.keyCode,
                    keyName(mapping.to.keyCode)});
    return out;
}

auto findById(std::vector<KeyMapping>& mappings, const QString& id) {
    return std::find_if(
        mappings.begin(), mappings.end(),
        [wanted = id.toStdString()](const auto& mapping) { return mapping.id == wanted; });
}

} // namespace

MappingVM::MappingVM(StorageMgr& storage, DaemonXPCClient& daemon, QObject* parent)
    : QObject(parent), m_storage(storage), m_daemon(daemon) {
    reload();
}

void MappingVM::reload() {
    show(m_storage.load());
}

QString MappingVM::addMapping() {
    Cfg cfg = m_storage.load();
    cfg.mappings.insert(cfg.mappings.begin(), KeyMapping{freshId(), true});
    QString id = QString::fromStdString(cfg.mappings.front().id);
    commit(cfg);
    return id;
}

void MappingVM::deleteMapping(const QString& id) {
    Cfg cfg = m_storage.load();
    if (const auto mapping = findById(cfg.mappings, id); mapping != cfg.mappings.end()) {
        cfg.mappings.erase(mapping);
        commit(cfg);
    }
}

QString MappingVM::setEnabled(const QString& id, bool enabled) {
    return change(id, enabled ? BuiltIn::isPromoted : BuiltIn::stays,
                  [enabled](KeyMapping& mapping) { mapping.enabled = enabled; });
}

QString MappingVM::setFrom(const QString& id, quint32 keyCode) {
    return change(id, BuiltIn::isPromoted,
                  [keyCode](KeyMapping& mapping) { mapping.from = {keyCode}; });
}

QString MappingVM::setTo(const QString& id, quint32 keyCode) {
    return change(id, BuiltIn::isPromoted,
                  [keyCode](KeyMapping& mapping) { mapping.to = {keyCode}; });
}

QString MappingVM::change(const QString& id, BuiltIn builtIn,
                          const std::function<void(KeyMapping&)>& edit) {
    Cfg cfg = m_storage.load();
    auto mapping = findById(cfg.mappings, id);
    if (mapping == cfg.mappings.end()) {
        auto defaults = uncoveredDefaultMappings(cfg.mappings);
        const auto row = findById(defaults, id);
        if (builtIn == BuiltIn::stays || row == defaults.end())
            return id;
        mapping = cfg.mappings.insert(cfg.mappings.begin(), promoted(*row, freshId()));
    }
    edit(*mapping);
    QString changed = QString::fromStdString(mapping->id);
    commit(cfg);
    return changed;
}

void MappingVM::commit(const Cfg& cfg) {
    m_storage.save(cfg);
    m_daemon.sendConfig(withDefaults(cfg));
    show(cfg);
}

void MappingVM::show(const Cfg& cfg) {
    m_userRows = rows(cfg.mappings);
    m_builtInRows = rows(uncoveredDefaultMappings(cfg.mappings));
    Q_EMIT rowsChanged();
}

} // namespace tamsel
