#include "config/storage_mgr.h"

#include "coding/cfg_coding.h"
#include "log/logger.h"
#include "platform/user_defaults.h"

namespace tamsel {

namespace {

ByteView view(const QByteArray& data) {
    return {reinterpret_cast<const std::uint8_t*>(data.constData()),
            static_cast<std::size_t>(data.size())};
}

QByteArray array(const Bytes& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

} // namespace

Cfg StorageMgr::load() const {
    const auto cfg =
        m_defaults.dataForKey(configKey).and_then([](const std::optional<QByteArray>& data) {
            return data ? decodeCfg(view(*data)) : Result<Cfg>(Cfg{});
        });
    if (!cfg) {
        m_logger.error(QStringLiteral("[StorageMgr] 載入配置失敗（數據已損壞，重置為預設值）: ") +
                       QString::fromStdString(cfg.error().description()));
        return {};
    }
    return *cfg;
}

void StorageMgr::save(const Cfg& cfg) {
    const auto saved = encodeCfg(cfg).and_then(
        [this](const Bytes& bytes) { return m_defaults.setData(array(bytes), configKey); });
    if (!saved)
        m_logger.error(QStringLiteral("[StorageMgr] 保存配置失敗: ") +
                       QString::fromStdString(saved.error().description()));
}

} // namespace tamsel
