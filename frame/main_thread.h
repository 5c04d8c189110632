// The rule that windows belong to the host's main thread.
#pragma once

namespace kelvane {

/// The first step of every settings dialog: stops the process (bug_check.h) when the host has turned thread checks on
/// and the calling thread is not its main thread. Without a host API there is no check.
void ensure_main_thread();

} // namespace kelvane
