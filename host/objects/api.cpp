#include "host/objects/api.h"

namespace host {

void api::print_console(const char* utf8, std::size_t length) {
    try {
        const std::lock_guard one_at_a_time(printing_);
        print_({utf8, length});
    } catch (const std::exception&) {
        // A console that is gone takes no notices, and the module cannot help it.
    }
}

} // namespace host
