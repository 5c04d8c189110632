// The weights of the conversion to a requested layout.
#pragma once

#include "effects/channels/channel_matrix_core.h"

#include <cstdint>

namespace kelvane {

/// Takes every speaker to its place in the target, and folds those without a place into their nearest neighbours;
/// target speakers that nothing reaches stay silent, and an input that has nowhere to go is dropped (the low-frequency
/// channel and the top speakers among them). To front centre alone goes the mean of all inputs, whatever they are. The
/// whole matrix is scaled so that the weights of no output add up to more than 1.0.
///
/// `inputs` is the count of input channels; one beyond the speakers of the mask goes nowhere else.
channel_matrix make_layout_matrix(std::uint32_t input_mask, std::size_t inputs, std::uint32_t target_mask);

} // namespace kelvane
