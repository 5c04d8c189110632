#include "effects/channels/downmix_core.h"

#include <bit>

namespace kelvane {

namespace {

constexpr float sqrt_half = 0.70710677F;

/// One speaker's part in left and right, in single precision: a product or mean of weights rounds to 32 bits.
struct side_weights {
    float left;
    float right;
};

/// One row per speaker bit, lowest first.
constexpr std::array<side_weights, stereo_downmix::max_inputs> weight_table{{
    {1.0F, 0.0F},           // front left
    {0.0F, 1.0F},           // front right
    {sqrt_half, sqrt_half}, // front centre
    {1.0F, 1.0F},           // low-frequency
    {sqrt_half, 0.0F},      // back left
    {0.0F, sqrt_half},      // back right
    {sqrt_half, 0.0F},      // front left of centre
    {0.0F, sqrt_half},      // front right of centre
    {sqrt_half, sqrt_half}, // back centre
    {sqrt_half, 0.0F},      // side left
    {0.0F, sqrt_half},      // side right
}};

constexpr std::uint32_t speakers_with_weight = (1U << weight_table.size()) - 1;

template <std::size_t Outputs>
constexpr downmix_weights<Outputs> to_outputs(const side_weights& row) {
    if constexpr (Outputs == 2) {
        return {static_cast<double>(row.left), static_cast<double>(row.right)};
    } else {
        return {static_cast<double>((row.left + row.right) * 0.5F)};
    }
}

} // namespace

template <std::size_t Outputs>
std::optional<downmix_matrix<Outputs>> downmix_matrix<Outputs>::make(std::uint32_t channel_mask,
                                                                     std::uint32_t channels) {
    if ((channel_mask & ~speakers_with_weight) != 0 ||
        static_cast<std::uint32_t>(std::popcount(channel_mask)) != channels) {
        return std::nullopt;
    }
    downmix_matrix matrix;
    for (std::size_t bit = 0; bit < weight_table.size(); ++bit) {
        if ((channel_mask >> bit & 1U) != 0) {
            matrix.weights_[matrix.inputs_++] = to_outputs<Outputs>(weight_table[bit]);
        }
    }
    return matrix;
}

template <std::size_t Outputs>
void downmix_matrix<Outputs>::mix(std::span<const double> in, std::span<double> out) const {
    const double* frame_in = in.data();
    for (std::size_t first = 0; first < out.size(); first += Outputs) {
        downmix_weights<Outputs> sums{};
        for (std::size_t input = 0; input < inputs_; ++input) {
            for (std::size_t output = 0; output < Outputs; ++output) {
                sums[output] += frame_in[input] * weights_[input][output];
            }
        }
        for (std::size_t output = 0; output < Outputs; ++output) {
            out[first + output] = sums[output];
        }
        frame_in += inputs_;
    }
}

template class downmix_matrix<1>;
template class downmix_matrix<2>;

} // namespace kelvane
