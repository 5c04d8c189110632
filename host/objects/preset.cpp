#include "host/objects/preset.h"

namespace host {

velmora::guid* preset::get_owner(velmora::guid* out) const {
    *out = owner_;
    return out;
}

void preset::set_data(const void* data, std::size_t bytes) {
    const auto* const first = static_cast<const std::byte*>(data);
    payload_ = bytes == 0 ? std::vector<std::byte>() : std::vector<std::byte>(first, first + bytes);
}

} // namespace host
