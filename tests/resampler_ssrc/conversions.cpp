#include "tests/resampler_ssrc/conversions.h"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <stdexcept>

namespace testing_support {

using kelvane::ssrc::ssrc_converter;

std::ostream& operator<<(std::ostream& stream, const rate_pair& rates) {
    return stream << rates.input_hz << " -> " << rates.output_hz;
}

std::vector<rate_pair> accepted_pairs() {
    std::vector<rate_pair> pairs;
    for (const std::uint32_t input_hz : common_rates_hz) {
        for (const std::uint32_t output_hz : common_rates_hz) {
            if (input_hz != output_hz && ssrc_converter::is_conversion_supported(input_hz, output_hz)) {
                pairs.push_back({input_hz, output_hz});
            }
        }
    }
    return pairs;
}

std::vector<rate_pair> sampled_pairs() {
    std::vector<rate_pair> pairs{{44100, 48000}, {48000, 44100}, {44100, 96000}, {96000, 44100},
                                 {44100, 88200}, {96000, 48000}, {32000, 48000}, {48000, 32000}};
    const std::vector<rate_pair> others = accepted_pairs();
    random_source random(20);
    for (const std::size_t all = pairs.size() + 4; pairs.size() < all;) {
        const rate_pair& other = others[pick(random, 0, others.size() - 1)];
        if (std::find(pairs.begin(), pairs.end(), other) == pairs.end()) {
            pairs.push_back(other);
        }
    }
    return pairs;
}

ssrc_converter make_converter(const rate_pair& rates, std::uint16_t channels) {
    ssrc_converter made;
    if (!made.set_up(kelvane::ssrc::float64_format(rates.input_hz, channels), rates.output_hz, usual_quality)) {
        throw std::invalid_argument("the converter refuses the rates");
    }
    return made;
}

std::vector<double> process(ssrc_converter& converter, std::span<const double> samples, bool is_last) {
    if (!converter.process(std::as_bytes(samples), is_last)) {
        throw std::runtime_error("the converter failed");
    }
    const std::span<const std::byte> bytes = converter.output();
    std::vector<double> output(bytes.size() / sizeof(double));
    if (!bytes.empty()) {
        std::memcpy(output.data(), bytes.data(), bytes.size());
    }
    return output;
}

std::vector<double> convert(const rate_pair& rates, std::span<const double> samples, std::uint16_t channels) {
    ssrc_converter converter = make_converter(rates, channels);
    return process(converter, samples, true);
}

std::vector<double> convert_in_blocks(const rate_pair& rates, std::span<const double> samples, std::uint16_t channels,
                                      const std::vector<std::size_t>& block_frames) {
    ssrc_converter converter = make_converter(rates, channels);
    std::vector<double> output;
    for (const std::size_t frames : block_frames) {
        const std::vector<double> made = process(converter, samples.first(frames * channels), false);
        output.insert(output.end(), made.begin(), made.end());
        samples = samples.subspan(frames * channels);
    }
    const std::vector<double> rest = process(converter, samples, true);
    output.insert(output.end(), rest.begin(), rest.end());
    return output;
}

} // namespace testing_support
