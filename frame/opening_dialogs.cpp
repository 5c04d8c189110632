#include "frame/opening_dialogs.h"

namespace kelvane {

void opening_dialogs::announce(modal_dialog& dialog) {
    const std::lock_guard lock(mutex_);
    by_thread_[std::this_thread::get_id()] = &dialog;
}

modal_dialog* opening_dialogs::claim() {
    const std::lock_guard lock(mutex_);
    const auto node = by_thread_.extract(std::this_thread::get_id());
    return node.empty() ? nullptr : node.mapped();
}

} // namespace kelvane
