#include "program/program.h"

#include "devices/mouse_takeover.h"
#include "platform/background_queue.h"

#include <utility>

namespace tamsel {

Program::BackgroundWork::~BackgroundWork() {
    queue.finish();
}

Program::Recovery::Recovery(StorageMgr& storage, const Platform& platform) {
    revertPendingTakeover(storage, platform.defaults);
}

Program::Program(Platform machine) : platform(std::move(machine)) {
    if (!platform.damagedSettings.isEmpty())
        logger.warning(QStringLiteral("[UserDefaults] 設定檔已損壞，另存為: ") +
                       platform.damagedSettings);
}

} // namespace tamsel
