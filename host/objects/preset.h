// A stored effect preset.
#pragma once

#include "velmora/effect_preset.h"

#include <cstddef>
#include <vector>

namespace host {

class preset final : public velmora::effect_preset {
public:
    velmora::guid* get_owner(velmora::guid* out) const override;
    void set_owner(const velmora::guid* owner) override { owner_ = *owner; }
    const void* get_data() const override { return payload_.data(); }
    std::size_t get_data_size() const override { return payload_.size(); }
    void set_data(const void* data, std::size_t bytes) override;

    const velmora::guid& owner() const noexcept { return owner_; }
    const std::vector<std::byte>& payload() const noexcept { return payload_; }

private:
    velmora::guid owner_{};
    std::vector<std::byte> payload_;
};

} // namespace host
