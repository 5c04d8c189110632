#include "frame/module_state.h"

namespace kelvane {

namespace {

module_state the_state;

} // namespace

module_state& state() noexcept {
    return the_state;
}

} // namespace kelvane
