#include "config/config_desk.h"

#include "config/default_config.h"
#include "config/storage_mgr.h"

namespace tamsel {

Cfg ConfigDesk::load() const {
    return m_storage.load();
}

Cfg ConfigDesk::inForce() const {
    return withDefaults(load());
}

std::optional<Cfg> ConfigDesk::change(const Edit& edit) {
    Cfg cfg = load();
    if (!edit(cfg))
        return std::nullopt;
    m_storage.save(cfg);
    Q_EMIT changed(withDefaults(cfg));
    return cfg;
}

} // namespace tamsel
