// Folding a layout of up to eleven speakers into two channels or one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kelvane {

/// How much of one input channel goes to each output channel of a down-mix.
template <std::size_t Outputs>
using downmix_weights = std::array<double, Outputs>;

/// The weights of every channel of one input layout, in channel order.
///
/// Rationale for the missing normalisation: the front pair keeps its level, so a loud surround input can exceed full
/// scale. A limiter behind it is the user's choice.
template <std::size_t Outputs>
class downmix_matrix {
public:
    /// The speakers that have a weight: front left (bit 0) to side right (bit 10).
    static constexpr std::size_t max_inputs = 11;

    /// The matrix for the speakers of `channel_mask`, lowest bit first; nothing when a speaker has no weight or the
    /// mask does not name `channels` speakers.
    static std::optional<downmix_matrix> make(std::uint32_t channel_mask, std::uint32_t channels);

    /// Mixes whole frames. `in` holds frames × input channels samples, `out` frames × `Outputs`; they do not overlap.
    /// Each output is the sum of sample × weight in channel order, from 0.0, in double.
    void mix(std::span<const double> in, std::span<double> out) const;

private:
    std::array<downmix_weights<Outputs>, max_inputs> weights_{};
    std::size_t inputs_ = 0;
};

using stereo_downmix = downmix_matrix<2>; ///< to left and right
using mono_downmix = downmix_matrix<1>;   ///< to the mean of what left and right would be

extern template class downmix_matrix<1>;
extern template class downmix_matrix<2>;

} // namespace kelvane
