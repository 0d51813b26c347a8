#include "editors/mapping_vm.h"

#include "config/config_desk.h"
#include "config/default_config.h"
#include "editors/fresh_id.h"
#include "keys/key_codes.h"

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

MappingVM::MappingVM(ConfigDesk& desk, QObject* parent) : QObject(parent), m_desk(desk) {
    reload();
}

void MappingVM::reload() {
    show(m_desk.load());
}

QString MappingVM::addMapping() {
    const std::string id = freshId();
    change([&id](Cfg& cfg) {
        cfg.mappings.insert(cfg.mappings.begin(), KeyMapping{id, true});
        return true;
    });
    return QString::fromStdString(id);
}

void MappingVM::deleteMapping(const QString& id) {
    change([&id](Cfg& cfg) {
        const auto mapping = findById(cfg.mappings, id);
        if (mapping == cfg.mappings.end())
            return false;
        cfg.mappings.erase(mapping);
        return true;
    });
}

QString MappingVM::setEnabled(const QString& id, bool enabled) {
    return changeRow(id, enabled ? BuiltIn::isPromoted : BuiltIn::stays,
                     [enabled](KeyMapping& mapping) { mapping.enabled = enabled; });
}

QString MappingVM::setFrom(const QString& id, quint32 keyCode) {
    return changeRow(id, BuiltIn::isPromoted,
                     [keyCode](KeyMapping& mapping) { mapping.from = {keyCode}; });
}

QString MappingVM::setTo(const QString& id, quint32 keyCode) {
    return changeRow(id, BuiltIn::isPromoted,
                     [keyCode](KeyMapping& mapping) { mapping.to = {keyCode}; });
}

QString MappingVM::changeRow(const QString& id, BuiltIn builtIn,
                             const std::function<void(KeyMapping&)>& edit) {
    QString changed = id;
    change([&](Cfg& cfg) {
        auto mapping = findById(cfg.mappings, id);
        if (mapping == cfg.mappings.end()) {
            auto defaults = uncoveredDefaultMappings(cfg.mappings);
            const auto row = findById(defaults, id);
            if (builtIn == BuiltIn::stays || row == defaults.end())
                return false;
            mapping = cfg.mappings.insert(cfg.mappings.begin(), promoted(*row, freshId()));
        }
        edit(*mapping);
        changed = QString::fromStdString(mapping->id);
        return true;
    });
    return changed;
}

void MappingVM::change(const std::function<bool(Cfg&)>& edit) {
    if (const auto cfg = m_desk.change(edit))
        show(*cfg);
}

void MappingVM::show(const Cfg& cfg) {
    m_userRows = rows(cfg.mappings);
    m_builtInRows = rows(uncoveredDefaultMappings(cfg.mappings));
    Q_EMIT rowsChanged();
}

} // namespace tamsel
