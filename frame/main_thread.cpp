#include "frame/main_thread.h"

#include "frame/bug_check.h"
#include "frame/module_state.h"
#include "velmora/host_api.h"

namespace kelvane {

void ensure_main_thread() {
    const module_state& known = state();
    if (known.checks_threads && known.host != nullptr && !known.host->is_main_thread()) {
        bug_check("core_api::ensure_main_thread");
    }
}

} // namespace kelvane
