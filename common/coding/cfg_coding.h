#pragma once

#include "base/bytes.h"
#include "base/error.h"
#include "records/records.h"

namespace tamsel {

/// The configuration as a binary property list ("bplist00"): the root is a dictionary with all
/// seven keys of Cfg, `actionUp` is written only where present. The daemon's wire format and the
/// stored format at once. Fails on text that is not UTF-8 and on a configuration too large to be
/// read back (see decodeCfg); the error's `where` is the field path.
Result<Bytes> encodeCfg(const Cfg& cfg);

/// The reverse, safe on any bytes: one error for the whole document, naming the field. Unknown
/// keys are skipped; `excludedKeyboards`, `mouseDevices`, `grabScope` and `allowedDevices` have
/// defaults; everything else is required. A document whose decoded texts and lists would take more
/// than 64 MiB is refused.
Result<Cfg> decodeCfg(ByteView bytes);

} // namespace tamsel
