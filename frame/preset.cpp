#include "frame/preset.h"

#include "frame/exceptions.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace kelvane {

preset::preset(const velmora::effect_preset& original) {
    copy_preset(*this, original);
}

velmora::guid* preset::get_owner(velmora::guid* out) const {
    *out = owner_;
    return out;
}

void preset::set_owner(const velmora::guid* owner) {
    owner_ = *owner;
}

const void* preset::get_data() const {
    return payload_.data();
}

std::size_t preset::get_data_size() const {
    return payload_.size();
}

void preset::set_data(const void* data, std::size_t bytes) {
    try {
        std::vector<std::byte> copied(bytes);
        std::copy_n(static_cast<const std::byte*>(data), bytes, copied.begin());
        payload_ = std::move(copied);
    } catch (const std::length_error&) {
        throw bad_array_length();
    } catch (const std::bad_alloc&) {
        throw bad_allocation();
    }
}

velmora::guid owner_of(const velmora::effect_preset& preset) {
    velmora::guid owner{};
    preset.get_owner(&owner);
    return owner;
}

std::span<const std::byte> payload_of(const velmora::effect_preset& preset) {
    const void* const data = preset.get_data();
    return {static_cast<const std::byte*>(data), data == nullptr ? 0 : preset.get_data_size()};
}

bool are_equal(const velmora::effect_preset& a, const velmora::effect_preset& b) {
    return owner_of(a) == owner_of(b) && std::ranges::equal(payload_of(a), payload_of(b));
}

void copy_preset(velmora::effect_preset& target, const velmora::effect_preset& source) {
    const velmora::guid owner = owner_of(source);
    target.set_owner(&owner);
    const std::span<const std::byte> payload = payload_of(source);
    target.set_data(payload.data(), payload.size());
}

} // namespace kelvane
