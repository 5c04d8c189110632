// The abort signal of calls that nobody can cancel.
#pragma once

#include "velmora/abort_signal.h"

namespace kelvane {

/// The module's one signal that never fires.
velmora::abort_signal& never_abort_signal() noexcept;

} // namespace kelvane
