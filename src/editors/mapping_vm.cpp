#include "editors/mapping_vm.h"

#include "config/default_config.h"
#include "config/records/key_codes.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_xpc_client.h"

#include <QUuid>

#include <algorithm>

namespace tamsel {

namespace {

std::string freshId() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

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
    change(id, [](std::vector<KeyMapping>& mappings, auto mapping) { mappings.erase(mapping); });
}

void MappingVM::setEnabled(const QString& id, bool enabled) {
    Cfg cfg = m_storage.load();
    if (const auto mapping = findById(cfg.mappings, id); mapping != cfg.mappings.end()) {
        mapping->enabled = enabled;
        commit(cfg);
        return;
    }
    auto builtIn = uncoveredDefaultMappings(cfg.mappings);
    if (const auto row = findById(builtIn, id); enabled && row != builtIn.end()) {
        cfg.mappings.insert(cfg.mappings.begin(), promoted(*row, freshId()));
        commit(cfg);
    }
}

void MappingVM::setFrom(const QString& id, quint32 keyCode) {
    change(id, [keyCode](auto&, auto mapping) { mapping->from = {keyCode}; });
}

void MappingVM::setTo(const QString& id, quint32 keyCode) {
    change(id, [keyCode](auto&, auto mapping) { mapping->to = {keyCode}; });
}

void MappingVM::change(
    const QString& id,
    const std::function<void(std::vector<KeyMapping>&, std::vector<KeyMapping>::iterator)>& edit) {
    Cfg cfg = m_storage.load();
    if (const auto mapping = findById(cfg.mappings, id); mapping != cfg.mappings.end()) {
        edit(cfg.mappings, mapping);
        commit(cfg);
    }
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
