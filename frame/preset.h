// The module's own preset object.
#pragma once

#include "velmora/effect_preset.h"

#include <cstddef>
#include <span>
#include <vector>

namespace kelvane {

/// Owns a copy of an owner GUID and a payload; used to edit a copy of the host's preset.
class preset final : public velmora::effect_preset {
public:
    preset() = default;
    explicit preset(const velmora::effect_preset& original);

    velmora::guid* get_owner(velmora::guid* out) const override;
    void set_owner(const velmora::guid* owner) override;
    const void* get_data() const override;
    std::size_t get_data_size() const override;
    void set_data(const void* data, std::size_t bytes) override;

private:
    velmora::guid owner_{};
    std::vector<std::byte> payload_;
};

velmora::guid owner_of(const velmora::effect_preset& preset);

/// The preset's bytes, valid until its next change. A preset that claims bytes and has none (null) is empty.
std::span<const std::byte> payload_of(const velmora::effect_preset& preset);

/// Whether owner, size and bytes are equal.
bool are_equal(const velmora::effect_preset& a, const velmora::effect_preset& b);

/// Makes `target` equal to `source`: its owner, then its payload.
void copy_preset(velmora::effect_preset& target, const velmora::effect_preset& source);

} // namespace kelvane
