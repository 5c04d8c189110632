// What a resampler answers its host.
#pragma once

#include "tests/module/run_effect.h"
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

/// Plays short blocks at 44100 Hz into an effect that holds nothing: behind each, the latency is what went in less what
/// came out, in seconds.
inline void expect_counted_latency(velmora::effect_instance& effect, std::uint32_t target_hz, random_source& random) {
    std::size_t in = 0;
    std::size_t out = 0;
    for (int block = 0; block < 40; ++block) {
        const std::size_t frames = pick(random, 1, 2000);
        in += frames;
        out += frames_of(play_whole(effect, mono_noise(44100, frames, random), 0));
        const double expected_s = static_cast<double>(in) / 44100 - static_cast<double>(out) / target_hz;
        ASSERT_EQ(effect.get_latency(), expected_s) << target_hz << ", block " << block;
        ASSERT_GE(effect.get_latency(), 0.0);
    }
    EXPECT_GT(out, 0U);
}

} // namespace testing_support
