// What a resampler answers a host that looks for one.
#pragma once

#include "tests/support/built_module.h"
#include "velmora/resampler_factory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace testing_support {

inline host::service_ptr<velmora::resampler_factory> resampler_factory_of(std::string_view display_name) {
    return host::query_as<velmora::resampler_factory>(*built_effects().find(display_name).factory);
}

struct conversion_row {
    std::uint32_t source_hz;
    std::uint32_t target_hz;
    bool is_supported;
};

inline void expect_conversions(std::string_view display_name, std::span<const conversion_row> table) {
    const auto factory = resampler_factory_of(display_name);
    for (const conversion_row& line : table) {
        EXPECT_EQ(factory->is_conversion_supported(line.source_hz, line.target_hz), line.is_supported)
            << line.source_hz << " to " << line.target_hz;
    }
}

/// The preset replaces what was in the host's.
inline void expect_preset_made(std::string_view display_name, std::uint32_t rate_hz, double quality,
                               const std::vector<std::uint8_t>& payload) {
    host::preset made;
    made.set_data("old", 3);
    resampler_factory_of(display_name)->make_preset(&made, rate_hz, quality);
    EXPECT_EQ(made.owner(), built_effects().find(display_name).identity);
    EXPECT_TRUE(std::ranges::equal(made.payload(), payload,
                                   [](std::byte left, std::uint8_t right) { return left == std::byte{right}; }))
        << "quality " << quality;
}

} // namespace testing_support
