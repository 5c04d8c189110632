// The weights of the up-mixers.
#pragma once

#include "effects/channels/channel_matrix_core.h"

#include <cstdint>
#include <optional>

namespace kelvane {

/// Spreads the speakers of one mask over those of a larger one: what is there stays where it is, a speaker between two
/// present ones is their mean, and any other on the left or the right repeats the front of its side. Nothing is
/// filtered or delayed.
///
/// Gives nothing when an input speaker has no place in the target; only the front centre may lack one, because the
/// front pair repeats it. `inputs` is the count of input channels; one beyond the speakers of the mask weighs nothing.
std::optional<channel_matrix> make_upmix_matrix(std::uint32_t input_mask, std::size_t inputs,
                                                std::uint32_t target_mask);

} // namespace kelvane
