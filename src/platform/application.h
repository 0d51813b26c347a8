#pragma once

namespace tamsel {

/// The running application. Main thread.
class Application {
public:
    virtual ~Application() = default;

    /// Asks the application to end; it does so on a later turn of the main loop.
    virtual void terminate() = 0;
};

} // namespace tamsel
