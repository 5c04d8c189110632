#include "effects/resampler_ssrc/block_convolver.h"

#include <algorithm>
#include <array>
#include <bit>

namespace kelvane::ssrc {

namespace {

/// Into how many parts a filter is cut, at most: fewer make larger transforms that leave the cache, and more latency;
/// more make more products.
constexpr std::size_t most_parts = convolution::most_parts;

std::size_t block_frames_for(std::size_t taps) noexcept {
    return std::max(right_angle_fft::fewest_points, std::bit_ceil((taps + most_parts - 1) / most_parts));
}

} // namespace

block_convolver::block_convolver(const shape& of, const vector_kernels& kernels)
    : shape_(of), kernels_(&kernels), transform_(block_frames_for(of.taps), kernels),
      parts_((of.taps + block_frames() - 1) / block_frames()),
      filters_(of.inputs * of.outputs * parts_ * spectrum_numbers()),
      blocks_in_(of.channels * of.inputs * 2 * block_frames()),
      gathered_(of.channels * of.outputs * parts_ * spectrum_numbers()),
      spectra_(channels_together * of.inputs * spectrum_numbers()),
      outputs_(channels_together * of.outputs * block_frames()) {}

void block_convolver::set_filter(std::size_t input, std::size_t output, std::span<const double> taps) noexcept {
    const double scale = 1.0 / static_cast<double>(block_frames());
    double* scaled = outputs_.data(); // nobody's at this time
    double* zeros = spectra_.data();
    std::fill_n(zeros, block_frames(), 0.0);
    for (std::size_t part = 0; part < parts_; ++part) {
        const std::size_t first = std::min(part * block_frames(), taps.size());
        const auto part_taps = taps.subspan(first, std::min(block_frames(), taps.size() - first));
        std::fill_n(scaled, block_frames(), 0.0);
        std::transform(part_taps.begin(), part_taps.end(), scaled, [scale](double tap) { return scale * tap; });
        transform_.forward(scaled, zeros, filter_part(input, output, part));
    }
}

std::span<double> block_convolver::input(std::size_t channel, std::size_t input) noexcept {
    return {block(channel, input, blocks_), block_frames()};
}

std::span<const double> block_convolver::output(std::size_t channel, std::size_t output) const noexcept {
    const std::size_t slot = channel % channels_together;
    return {outputs_.data() + (slot * shape_.outputs + output) * block_frames(), block_frames()};
}

void block_convolver::run(std::size_t first_channel, std::size_t count) noexcept {
    std::array<convolution, channels_together> channels{};
    for (std::size_t slot = 0; slot < count; ++slot) {
        channels[slot] = convolution_of(first_channel + slot);
    }
    kernels_->convolve(transform_.tables(), channels.data(), count);
}

convolution block_convolver::convolution_of(std::size_t channel) noexcept {
    const std::size_t slot = channel % channels_together;
    convolution now{};
    now.inputs = shape_.inputs;
    now.outputs = shape_.outputs;
    now.parts = parts_;
    for (std::size_t input = 0; input < shape_.inputs; ++input) {
        now.older[input] = block(channel, input, blocks_ + 1);
        now.newer[input] = block(channel, input, blocks_);
        now.spectra[input] = spectra_.data() + (slot * shape_.inputs + input) * spectrum_numbers();
        for (std::size_t output = 0; output < shape_.outputs; ++output) {
            for (std::size_t part = 0; part < parts_; ++part) {
                now.filters[input][output][part] = filter_part(input, output, part);
            }
        }
    }
    for (std::size_t output = 0; output < shape_.outputs; ++output) {
        now.results[output] = outputs_.data() + (slot * shape_.outputs + output) * block_frames();
        for (std::size_t part = 0; part < parts_; ++part) {
            now.gathered[output][part] = gathered(channel, output, part);
        }
    }
    return now;
}

void block_convolver::reset() noexcept {
    std::fill(blocks_in_.begin(), blocks_in_.end(), 0.0);
    std::fill(gathered_.begin(), gathered_.end(), 0.0);
}

double* block_convolver::block(std::size_t channel, std::size_t input, std::size_t number) noexcept {
    return blocks_in_.data() + ((channel * shape_.inputs + input) * 2 + number % 2) * block_frames();
}

double* block_convolver::filter_part(std::size_t input, std::size_t output, std::size_t part) noexcept {
    return filters_.data() + ((input * shape_.outputs + output) * parts_ + part) * spectrum_numbers();
}

double* block_convolver::gathered(std::size_t channel, std::size_t output, std::size_t ahead) noexcept {
    const std::size_t slot = (blocks_ + ahead) % parts_;
    return gathered_.data() + ((channel * shape_.outputs + output) * parts_ + slot) * spectrum_numbers();
}

} // namespace kelvane::ssrc
