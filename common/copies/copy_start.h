#pragma once

#include "base/own_folder.h"

#include <optional>
#include <string>

namespace tamsel {

/// The start of the program of a copy, as far as it concerns the copy: what an update that was cut
/// short has left is settled first, and the copy before this one goes when this one works. Held
/// from the program's first moment to its end.
class CopyStart final {
public:
    /// Another copy has come back to the place, and its program is the one to run.
    struct TakenBack {
        std::string program;
        std::string version; ///< that did not work
    };

    /// `copy` is the folder that the program runs from. A version on trial whose relauncher is gone
    /// gets one start; when that has not come through, it is taken back here. So it is when the
    /// copy before it is started where it lies.
    explicit CopyStart(std::string copy);

    const std::optional<TakenBack>& takenBack() const { return m_takenBack; }

    /// The program works: a trial of its copy has ended well.
    void works();
    /// What updates that were cut short have left beside the copy goes. What somebody works in, a
    /// trial, and what is not this user's alone stays. Any thread.
    static void clearLeftovers(const std::string& copy);

private:
    void settle(const std::string& folder);
    void settleFromStaging();
    void takeBack(const OwnFolder& staging, const std::string& place);

    std::string m_copy;
    std::optional<TakenBack> m_takenBack;
    std::optional<OwnFolder> m_onTrial; ///< this copy's trial is this program's to end
};

} // namespace tamsel
