#pragma once

#include "copies/copy_start.h"
#include "platform/linux/updater/relaunch.h"

namespace tamsel {

class BackgroundQueue;

/// The program's start as a version: from before anything is opened until the version counts as
/// started, which is when its window's first frame is on the screen and it has tried to reach the
/// daemon. Not before then does the copy before it go. Main thread.
class ProgramStart final {
public:
    /// The first thing that the program does. Takes the relauncher's arguments out. When another
    /// copy has come back to the place, this process becomes its program and does not return.
    ProgramStart(int& argc, char** argv);

    const RelaunchOrder& order() const { return m_order; }

    /// `version` is this one's build; both calls after this one.
    void expect(BackgroundQueue& background, const QString& version);
    void frameShown();
    void daemonCalled();

private:
    void counts();

    std::string m_folder; ///< the copy's
    RelaunchOrder m_order;
    CopyStart m_start;
    BackgroundQueue* m_background = nullptr;
    QString m_version;
    bool m_hasFrame = false;
    bool m_hasCalled = false;
};

} // namespace tamsel
