// Mixing every frame of one channel layout into another by a matrix of weights.
#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace kelvane {

/// One weight per output and input channel. Every output sample is the sum of input × weight over all input channels,
/// in channel order, from 0.0, in double.
///
/// The room is fixed, so that a stream that changes its layout makes nothing allocate.
class channel_matrix {
public:
    static constexpr std::size_t max_channels = 32;

    channel_matrix() noexcept = default;

    /// All weights are 0.0. At most `max_channels` of each.
    channel_matrix(std::size_t outputs, std::size_t inputs) noexcept : outputs_(outputs), inputs_(inputs) {}

    std::size_t outputs() const noexcept { return outputs_; }
    std::size_t inputs() const noexcept { return inputs_; }

    double& weight(std::size_t output, std::size_t input) noexcept { return weights_[output][input]; }
    double weight(std::size_t output, std::size_t input) const noexcept { return weights_[output][input]; }

private:
    std::array<std::array<double, max_channels>, max_channels> weights_{};
    std::size_t outputs_ = 0;
    std::size_t inputs_ = 0;
};

/// One summand of each of two neighbouring outputs.
struct mixing_term {
    std::array<std::size_t, 2> inputs{};
    std::array<double, 2> weights{};
};

/// Multiplies frames by a matrix without touching the weights that are 0.0. Outputs are made two at a time, each from
/// its own list of inputs; the shorter list is filled up with products with 0.0. Such a product adds nothing unless the
/// sample is infinite or not a number; frames with such samples are multiplied in full, so that what comes out never
/// depends on the short cut.
class channel_mixer {
public:
    channel_mixer() noexcept = default;
    explicit channel_mixer(const channel_matrix& matrix) noexcept;

    std::size_t outputs() const noexcept { return matrix_.outputs(); }
    std::size_t inputs() const noexcept { return matrix_.inputs(); }

    /// Mixes whole frames. `in` holds frames × inputs samples, `out` frames × outputs; they do not overlap.
    void mix(std::span<const double> in, std::span<double> out) const noexcept;

private:
    /// An even output and the odd one behind it; an odd count of outputs ends with an even one alone.
    struct output_pair {
        std::array<mixing_term, channel_matrix::max_channels> terms{};
        std::size_t term_count = 0;
    };

    void add_terms(output_pair& pair, std::size_t lane, std::size_t output) const noexcept;
    void mix_chunk(const double* in, double* out, std::size_t frames) const noexcept;
    void mix_in_full(const double* in, double* out, std::size_t frames) const noexcept;

    channel_matrix matrix_;
    std::array<output_pair, channel_matrix::max_channels / 2> pairs_{};
};

} // namespace kelvane
