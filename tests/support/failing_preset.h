// A preset whose payload cannot be had.
#pragma once

#include "velmora/effect_preset.h"

#include <cstddef>
#include <stdexcept>

namespace testing_support {

/// Tells its owner; everything else is a `std::runtime_error` that says "no payload".
class failing_preset final : public velmora::effect_preset {
public:
    explicit failing_preset(const velmora::guid& owner) : owner_(owner) {}

    velmora::guid* get_owner(velmora::guid* out) const override {
        *out = owner_;
        return out;
    }
    void set_owner(const velmora::guid*) override { fail(); }
    const void* get_data() const override { fail(); }
    std::size_t get_data_size() const override { fail(); }
    void set_data(const void*, std::size_t) override { fail(); }

private:
    [[noreturn]] static void fail() { throw std::runtime_error("no payload"); }

    velmora::guid owner_;
};

} // namespace testing_support
