// The conversion between speaker layouts as one writes it down: rule after rule, with speakers by name.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace testing_support {

/// Output channel, then input channel.
using weight_rows = std::vector<std::vector<double>>;

/// "FL", "FR", … of a mask, lowest bit first; bits without a name are "bit 11" and so on.
std::vector<std::string> speakers_of(std::uint32_t channel_mask);

/// The matrix from one mask to another.
weight_rows literal_layout_matrix(std::uint32_t input_mask, std::uint32_t target_mask);

/// Every output sample is the sum of input × weight, in channel order.
std::vector<double> multiply(const weight_rows& matrix, const std::vector<double>& in, std::size_t inputs);

} // namespace testing_support
