#pragma once

#include "platform/application.h"

namespace tamsel {

/// The running QCoreApplication.
class QtApplication final : public Application {
public:
    void terminate() override;
};

} // namespace tamsel
