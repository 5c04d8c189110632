// Leaks of libraries that are not ours.
#include "frame/compiler.h"

// The leak sanitizer looks for this function by its name.
extern "C" KELVANE_EXPORT const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:vorbis_encode_setup_init\n"; // with six channels
}
