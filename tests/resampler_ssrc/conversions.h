// Conversions of whole signals, and the pairs of rates to ask for.
#pragma once

#include "effects/resampler_ssrc/ssrc_converter.h"
#include "tests/support/signals.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace testing_support {

constexpr kelvane::ssrc::converter_quality usual_quality{16384, 16384, 170, 100};

struct rate_pair {
    std::uint32_t input_hz;
    std::uint32_t output_hz;

    friend bool operator==(const rate_pair&, const rate_pair&) = default;
};

std::ostream& operator<<(std::ostream& stream, const rate_pair& rates);

constexpr std::array<std::uint32_t, 16> common_rates_hz{8000,  11025, 12000, 16000, 22050,  24000,  32000,  44100,
                                                        48000, 64000, 88200, 96000, 176400, 192000, 352800, 384000};

/// Of the common rates, all pairs of two different ones that can be converted.
std::vector<rate_pair> accepted_pairs();

/// The pairs that players meet most, and some others, the same in every run.
std::vector<rate_pair> sampled_pairs();

/// A set-up converter of 64-bit samples.
kelvane::ssrc::ssrc_converter make_converter(const rate_pair& rates, std::uint16_t channels = 1);

/// The output of one call.
std::vector<double> process(kelvane::ssrc::ssrc_converter& converter, std::span<const double> samples, bool is_last);

/// A whole stream in one call.
std::vector<double> convert(const rate_pair& rates, std::span<const double> samples, std::uint16_t channels = 1);

/// A whole stream in calls of these many frames.
std::vector<double> convert_in_blocks(const rate_pair& rates, std::span<const double> samples, std::uint16_t channels,
                                      const std::vector<std::size_t>& block_frames);

} // namespace testing_support
