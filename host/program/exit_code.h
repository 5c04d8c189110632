// How the program ends.
#pragma once

namespace host {

/// Shown by --help; scripts rely on them.
enum exit_code : int {
    exit_success = 0,
    exit_failure = 1,      ///< the work could not be done: a file, an effect, the module
    exit_usage = 2,        ///< the command line is wrong
    exit_interrupted = 130 ///< Ctrl-C or a request to terminate
};

} // namespace host
